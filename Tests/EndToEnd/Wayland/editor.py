#!/usr/bin/env python3
"""A text field of GTK. usage: editor.py 3|4 FILE: what stands in it is written to the file at every change."""
import sys

import gi

gi.require_version("Gtk", sys.argv[1] + ".0")
from gi.repository import GLib, Gtk

view = Gtk.TextView()


def changed(buffer):
    text = buffer.get_text(buffer.get_start_iter(), buffer.get_end_iter(), False)
    with open(sys.argv[2], "w", encoding="utf-8") as file:
        file.write(text)


view.get_buffer().connect("changed", changed)
if sys.argv[1] == "3":
    window = Gtk.Window(title="editor")
    window.add(view)
    window.show_all()
    window.connect("destroy", Gtk.main_quit)
    view.grab_focus()
    Gtk.main()
else:
    loop = GLib.MainLoop()
    window = Gtk.Window(title="editor")
    window.set_child(view)
    window.present()
    view.grab_focus()
    loop.run()
