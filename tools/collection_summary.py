#!/usr/bin/env python3
"""Sums up unattended collections, from what both sides wrote down.

    tools/collection_summary.py PLANT.LOG LOG [LOG ...]

PLANT.LOG is what velorn-plant --log wrote: what each site was asked for. Each LOG is the log of one run: what
was stored, and when. A site has failed if its run did not say that it was done, or if it stored another number
of quarter-hours than were asked for. Exit code 0: at most one site has failed; 1: more, or there was none.
"""
import re
import sys

MOST_FAILURES = 1
DAY = 24 * 3600

SITE = re.compile(r"^(\d\d):(\d\d):(\d\d) lade Datei von:  (.*?) *$")
DONE = re.compile(r"^(\d\d):(\d\d):(\d\d) FERTIG! (\d+) neue 1/4h-Daten")
TROUBLE = re.compile(r"^(\d\d):(\d\d):(\d\d) (KEIN CONNECT|ABBRUCH \(Timeout\)|DATEI EXISTIERT NICHT!!!)")
ASKED = re.compile(r"^(.*): Abholung zu Ende, (\d+) Datensätze zu (\d+) Werten verlangt, (\d+) quittiert$")


def seconds(match) -> int:
    return int(match[1]) * 3600 + int(match[2]) * 60 + int(match[3])


def sites_of(path: str) -> list:
    """[name, stored quarter-hours or None, what went wrong, seconds] of each site of a run."""
    sites = []
    begun = 0
    with open(path, encoding="cp1252", errors="replace") as log:
        for line in log:
            line = line.rstrip("\r\n")
            if match := SITE.match(line):
                sites.append([match[4], None, "not finished", 0])
                begun = seconds(match)
            elif sites and (match := DONE.match(line)):
                sites[-1][1:] = [int(match[4]), "", (seconds(match) - begun) % DAY]
            elif sites and (match := TROUBLE.match(line)):
                sites[-1][2:] = [match[4], (seconds(match) - begun) % DAY]
    return sites


def asked_of(path: str) -> dict:
    """(quarter-hours, values in each) that each site was asked for last."""
    asked = {}
    with open(path, encoding="utf-8", errors="replace") as log:
        for line in log:
            if match := ASKED.match(line.rstrip("\n")):
                asked[match[1]] = (int(match[2]), int(match[3]))
    return asked


def main() -> int:
    asked = asked_of(sys.argv[1])
    sites = [site for path in sys.argv[2:] for site in sites_of(path)]
    row = "   {:24}{:>13}{:>13}{:>13}{:>13}{:>9}  {}"
    print(row.format("", "1/4 h asked", "1/4 h stored", "values asked", "stored", "time", "").rstrip())
    failures = 0
    total = [0, 0, 0, 0, 0]
    for name, stored, trouble, time in sites:
        wanted, tracks = asked.get(name, (0, 0))
        if stored is not None and stored != wanted:
            trouble = "not what was asked for"
        failures += 1 if trouble else 0
        numbers = [wanted, stored or 0, wanted * tracks, (stored or 0) * tracks, time]
        total = [a + b for a, b in zip(total, numbers)]
        print(row.format(name, *numbers[:4], f"{time} s", trouble).rstrip())
    print(row.format(f"{len(sites)} sites, {failures} failed", *total[:4], f"{total[4]} s", "").rstrip())
    return 0 if sites and failures <= MOST_FAILURES else 1


if __name__ == "__main__":
    sys.exit(main())
