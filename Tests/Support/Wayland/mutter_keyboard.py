#!/usr/bin/env python3
"""The user's keyboard on GNOME. usage: mutter_keyboard.py FIFO: plays the lines that are written to it, "down KEY", "up KEY"
or "tap KEY" with the kernel's number of the key."""
import os
import sys
import time

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib

NAME = "org.gnome.Mutter.RemoteDesktop"
bus = Gio.bus_get_sync(Gio.BusType.SESSION)


def call(path, interface, method, *arguments):
    return bus.call_sync(NAME, path, interface, method, *arguments, None, Gio.DBusCallFlags.NONE, -1, None)


def press(key, down):
    call(session, NAME + ".Session", "NotifyKeyboardKeycode", GLib.Variant("(ub)", (int(key), down)))


session = call("/org/gnome/Mutter/RemoteDesktop", NAME, "CreateSession", None).unpack()[0]
call(session, NAME + ".Session", "Start", None)
print("ready", flush=True)
# Opened for both, so that it does not end with the first who writes.
with os.fdopen(os.open(sys.argv[1], os.O_RDWR), "r", newline="\n") as lines:
    for line in lines:
        what, key = line.split()
        if what != "up":
            press(key, True)
        if what == "tap":
            time.sleep(0.02)
        if what != "down":
            press(key, False)
