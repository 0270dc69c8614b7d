#!/usr/bin/env python3
"""Tells settings of the program that ./start has to know before it presses keys.

    tools/lan_settings.py LAN.PAR

Prints one line: "telnet=0 login=1". A file that isn't there holds the defaults. The file is a row of tagged
values: a two-byte tag and what belongs to it.
"""
import struct
import sys

SIZES = {0: 0, 1: 0, 2: 2, 3: 4, 4: 4, 5: 8, 6: 8, 7: 8, 11: 2}
NUMBERS = {2: "<h", 3: "<i", 4: "<f", 5: "<d", 11: "<h"}
TELNET, USER, AUTOMATIC = 2, 3, 5  # places in the row


def values(content: bytes) -> list:
    found = []
    at = 0
    while at + 2 <= len(content) and len(found) < 12:
        (tag,) = struct.unpack_from("<H", content, at)
        at += 2
        size = SIZES.get(tag)
        if tag == 8 and at + 2 <= len(content):
            (size,) = struct.unpack_from("<H", content, at)
            at += 2
        if size is None or at + size > len(content):
            break
        raw = content[at : at + size]
        found.append(struct.unpack(NUMBERS[tag], raw)[0] if tag in NUMBERS else raw)
        at += size
    return found + [b""] * (12 - len(found))


def is_on(value) -> bool:
    try:
        return float(value or 0) != 0
    except ValueError:
        return False


def main() -> int:
    try:
        with open(sys.argv[1], "rb") as file:
            row = values(file.read())
    except FileNotFoundError:
        row = values(b"")
    login = is_on(row[AUTOMATIC]) and bool(row[USER])
    print(f"telnet={int(is_on(row[TELNET]))} automatic={int(is_on(row[AUTOMATIC]))} login={int(login)}")
    return 0


if __name__ == "__main__":
    sys.exit(main())
