"""A window with one part that has the keyboard: field.py gtk3|gtk4 password|entry|button"""

import sys

toolkit, kind = sys.argv[1:]

import gi

gi.require_version("Gtk", toolkit[-1] + ".0")
from gi.repository import GLib, Gtk

if kind == "button":
    widget = Gtk.Button(label="button")
elif kind == "password" and toolkit == "gtk4":
    widget = Gtk.PasswordEntry()
else:
    widget = Gtk.Entry()
    widget.set_visibility(kind != "password")
if toolkit == "gtk3":
    window = Gtk.Window(title=kind)
    window.add(widget)
    window.show_all()
    window.present()
else:
    Gtk.init()
    window = Gtk.Window(title=kind)
    window.set_child(widget)
    window.present()
widget.grab_focus()
GLib.MainLoop().run()
