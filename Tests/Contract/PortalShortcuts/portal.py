#!/usr/bin/env python3
"""A portal for shortcuts that forgives nothing. Says what it is asked for; each line that it reads is a signal to send, or "user
refuses" of the next binding."""
import os

from gi.repository import Gio, GLib

ROOT, NAME = "/org/freedesktop/portal/desktop", "org.freedesktop.portal."
XML = f"""<node><interface name="org.freedesktop.host.portal.Registry"><method name="Register"><arg type="s" direction="in"/>
<arg type="a{{sv}}" direction="in"/></method></interface><interface name="{NAME}GlobalShortcuts"><method name="CreateSession">
<arg type="a{{sv}}" direction="in"/><arg type="o" direction="out"/></method><method name="BindShortcuts">
<arg type="o" direction="in"/><arg type="a(sa{{sv}})" direction="in"/><arg type="s" direction="in"/><arg type="a{{sv}}"
direction="in"/><arg type="o" direction="out"/></method></interface><interface name="{NAME}Session"><method name="Close"/>
</interface></node>"""
bus, loop, state = Gio.bus_get_sync(Gio.BusType.SESSION), GLib.MainLoop(), {"session": None, "refuses": False, "known": False}
interfaces = {interface.name: interface for interface in Gio.DBusNodeInfo.new_for_xml(XML).interfaces}


def say(*words):
    print(*words, flush=True)


def called(_bus, sender, path, interface, method, arguments, invocation):
    values, client = arguments.unpack(), sender[1:].replace(".", "_")
    answer, results, code = None, {}, 0
    if method == "Register":
        assert not state["known"]
        state["known"] = True
        say("registered", values[0])
    elif method == "CreateSession":
        assert state["known"] and state["session"] is None
        state["session"] = f"{ROOT}/session/{client}/{values[0]['session_handle_token']}"
        state["object"] = bus.register_object(state["session"], interfaces[NAME + "Session"], called, None, None)
        results = {"session_handle": GLib.Variant("s", state["session"])}
    elif method == "BindShortcuts":
        assert values[0] == state["session"] and values[2] == "" and values[1][0][1]["description"]
        code = 1 if state["refuses"] else 0
        say("bound", values[1][0][1]["preferred_trigger"])
    else:
        bus.unregister_object(state["object"])
        state["session"] = None
        say("closed")
    if method in ("CreateSession", "BindShortcuts"):
        request = f"{ROOT}/request/{client}/{values[-1]['handle_token']}"
        answer = GLib.Variant("(o)", (request,))
    invocation.return_value(answer)
    if answer:
        bus.emit_signal(sender, request, NAME + "Request", "Response", GLib.Variant("(ua{sv})", (code, results)))


def read(*_):
    lines = os.read(0, 4096).decode().split("\n")
    for line in lines:
        if line in ("Activated", "Deactivated"):
            for session in ("/of/another", state["session"]):
                bus.emit_signal(None, ROOT, NAME + "GlobalShortcuts", line, GLib.Variant("(osta{sv})", (session, "dictate", 1, {})))
        elif line == "Closed":
            bus.emit_signal(None, state["session"], NAME + "Session", line, GLib.Variant("(a{sv})", ({},)))
            bus.unregister_object(state["object"])
            state["session"] = None
        elif line == "user refuses":
            state["refuses"] = True
    return lines != [""] or loop.quit()


for name in ("org.freedesktop.host.portal.Registry", NAME + "GlobalShortcuts"):
    bus.register_object(ROOT, interfaces[name], called, None, None)
Gio.bus_own_name_on_connection(bus, NAME + "Desktop", Gio.BusNameOwnerFlags.NONE, lambda *_: say("ready"), None)
GLib.io_add_watch(0, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, read)
loop.run()
