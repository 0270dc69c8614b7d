#!/usr/bin/env python3
"""Asks a window to close, as a click on its cross does. Needs no window manager.

    tools/close_window.py WINDOW_ID

Sends WM_DELETE_WINDOW through libX11; exit code 1 if there is no display.
"""
import ctypes
import ctypes.util
import sys


class ClientMessage(ctypes.Structure):
    _fields_ = [
        ("type", ctypes.c_int),
        ("serial", ctypes.c_ulong),
        ("send_event", ctypes.c_int),
        ("display", ctypes.c_void_p),
        ("window", ctypes.c_ulong),
        ("message_type", ctypes.c_ulong),
        ("format", ctypes.c_int),
        ("data", ctypes.c_long * 5),
    ]


class XEvent(ctypes.Union):
    _fields_ = [("message", ClientMessage), ("room", ctypes.c_long * 24)]


def main() -> int:
    window = int(sys.argv[1], 0)
    x11 = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
    x11.XOpenDisplay.restype = ctypes.c_void_p
    x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
    x11.XInternAtom.restype = ctypes.c_ulong
    x11.XInternAtom.argtypes = [ctypes.c_void_p, ctypes.c_char_p, ctypes.c_int]
    x11.XSendEvent.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_long,
                               ctypes.POINTER(XEvent)]
    x11.XCloseDisplay.argtypes = [ctypes.c_void_p]

    display = x11.XOpenDisplay(None)
    if not display:
        return 1
    event = XEvent()
    event.message.type = 33  # ClientMessage
    event.message.window = window
    event.message.message_type = x11.XInternAtom(display, b"WM_PROTOCOLS", 0)
    event.message.format = 32
    event.message.data[0] = x11.XInternAtom(display, b"WM_DELETE_WINDOW", 0)
    x11.XSendEvent(display, window, 0, 0, ctypes.byref(event))
    x11.XCloseDisplay(display)
    return 0


if __name__ == "__main__":
    sys.exit(main())
