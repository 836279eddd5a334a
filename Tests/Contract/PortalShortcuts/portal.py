#!/usr/bin/env python3
"""A portal that forgives nothing, with GlobalShortcuts, RemoteDesktop and Clipboard. Says what it is asked for, and does what each
line says that it reads: "Activated", "Closed"; "allow", "deny" or "break" for what waits for the user; "refuse" the next binding;
"answer twice" from now on; "offer FILE" as another application (JSON: forms in hexadecimal); "read TYPE FILE" as another one."""
import json, os, threading

from gi.repository import Gio, GLib

ROOT, NAME = "/org/freedesktop/portal/desktop", "org.freedesktop.portal."


def interface(name, methods, properties=""):
    def method(line):
        member, taken, *given = line.split()
        arguments = [(kind, "in") for kind in taken.split(",") if kind != "-"] + [(kind, "out") for kind in given]
        return f'<method name="{member}">' + "".join(f'<arg type="{k}" direction="{d}"/>' for k, d in arguments) + "</method>"
    return f'<interface name="{name}">' + "".join(method(line) for line in methods) + "".join(
        f'<property name="{known}" type="u" access="read"/>' for known in properties.split()) + "</interface>"


XML = "<node>" + "".join((
    interface("org.freedesktop.host.portal.Registry", ["Register s,a{sv}"]), interface(NAME + "Session", ["Close -"]),
    interface(NAME + "Request", ["Close -"]),
    interface(NAME + "GlobalShortcuts", ["CreateSession a{sv} o", "BindShortcuts o,a(sa{sv}),s,a{sv} o"]),
    interface(NAME + "RemoteDesktop", ["CreateSession a{sv} o", "SelectDevices o,a{sv} o", "Start o,s,a{sv} o",
                                       "NotifyKeyboardKeycode o,a{sv},i,u"], "version AvailableDeviceTypes"),
    interface(NAME + "Clipboard", ["RequestClipboard o,a{sv}", "SetSelection o,a{sv}", "SelectionWrite o,u h",
                                   "SelectionWriteDone o,u,b", "SelectionRead o,s h"], "version"))) + "</node>"
bus, loop = Gio.bus_get_sync(Gio.BusType.SESSION), GLib.MainLoop()
interfaces = {known.name: known for known in Gio.DBusNodeInfo.new_for_xml(XML).interfaces}
sessions, tokens, waiting, transfers = {}, set(), [], {}
state = {"known": set(), "refuses": False, "twice": False, "offer": None, "owner": None, "serial": 0}


def say(*words):
    print(*words, flush=True)


def answer(sender, request, code, results):
    for _ in range(2 if state["twice"] else 1):
        bus.emit_signal(sender, request, NAME + "Request", "Response", GLib.Variant("(ua{sv})", (code, results)))


def changed():
    """Tells of the clipboard's owner, as the real ones do: nothing when there is none."""
    for path, session in sessions.items():
        isOwner = path == state["owner"]
        types = session["types"] if isOwner else list(state["offer"] or ())
        if session.get("clipboard") and types:
            told = {"mime_types": GLib.Variant("(as)", (types,)), "session_is_owner": GLib.Variant("b", isOwner)}
            bus.emit_signal(session["client"], ROOT, NAME + "Clipboard", "SelectionOwnerChanged", GLib.Variant("(oa{sv})", (path, told)))


def end(path):
    bus.unregister_object(sessions.pop(path)["object"])
    say("closed")


def give(sink, value):
    threading.Thread(target=lambda: (os.write, [sink.write(value), sink.close()]), daemon=True).start()


def clipboard(method, path, values, invocation):
    session = sessions[path]
    if method == "RequestClipboard":
        assert session["selected"] and not session["started"]
        session["clipboard"] = True
    elif method == "SetSelection":
        assert session["clipboard"] and session["started"]
        session["types"], state["owner"], state["offer"] = values[1].get("mime_types", []), path, None
        changed()
    elif method == "SelectionWriteDone":
        file, writer = transfers.pop(values[1])
        if writer:
            writer.join()
        say("given" if values[2] else "refused", file)
    else:
        source, sink = os.pipe()
        if method == "SelectionWrite":
            file = transfers[values[1]][0]
            writer = threading.Thread(target=lambda: open(file, "wb").write(os.fdopen(source, "rb").read()), daemon=True)
            transfers[values[1]] = (file, writer)
            writer.start()
        else:
            if not (state["offer"] and values[1] in state["offer"]):
                return invocation.return_dbus_error(NAME + "Error.Failed", "no such form")
            give(os.fdopen(sink, "wb"), bytes.fromhex(state["offer"][values[1]]))
        handle = sink if method == "SelectionWrite" else source
        files = Gio.UnixFDList.new_from_array([handle])
        return invocation.return_value_with_unix_fd_list(GLib.Variant("(h)", (0,)), files)
    return invocation.return_value(None)


def called(_bus, sender, path, interface, method, arguments, invocation):
    values, client = arguments.unpack(), sender[1:].replace(".", "_")
    kind, results, code, asks = interface.split(".")[-1], {}, 0, False
    if method == "Register":
        assert sender not in state["known"]
        state["known"].add(sender)
        say("registered", values[0])
        return invocation.return_value(None)
    if method == "Close":
        if kind == "Session":
            end(path)
        return invocation.return_value(None)
    if kind == "Clipboard":
        return clipboard(method, values[0], values, invocation)
    if method == "NotifyKeyboardKeycode":
        if values[0] not in sessions or not sessions[values[0]]["started"]:
            return invocation.return_dbus_error(NAME + "Error.Failed", "no session")
        say("key", values[2], values[3])
        return invocation.return_value(None)
    options = values[-1]
    if method == "CreateSession":
        assert sender in state["known"]
        session = f"{ROOT}/session/{client}/{options['session_handle_token']}"
        number = bus.register_object(session, interfaces[NAME + "Session"], called, None, None)
        sessions[session] = {"object": number, "client": sender, "kind": kind, "selected": False, "started": False}
        results = {"session_handle": GLib.Variant("s", session)}
    session = sessions[values[0]] if method != "CreateSession" else None
    assert session is None or session["kind"] == kind
    if method == "BindShortcuts":
        assert values[2] == "" and values[1][0][1]["description"]
        code, state["refuses"] = (1, False) if state["refuses"] else (0, False)
        say("bound", values[1][0][1]["preferred_trigger"])
    elif method == "SelectDevices":
        assert options["types"] == 1 and options["persist_mode"] == 2
        session["selected"] = True
        asks = session["asks"] = options.get("restore_token") not in tokens
        tokens.discard(options.get("restore_token"))
        asks = False
    elif method == "Start":
        assert session["selected"]
        token = f"token-{len(tokens)}-{values[0]}"
        results = {"devices": GLib.Variant("u", 1), "clipboard_enabled": GLib.Variant("b", session.get("clipboard", False)),
                   "restore_token": GLib.Variant("s", token)}
        asks = session["asks"]
    request = f"{ROOT}/request/{client}/{options['handle_token']}"
    invocation.return_value(GLib.Variant("(o)", (request,)))

    def go_on(code=code):
        if method == "Start" and code == 0:
            session["started"] = True
            tokens.add(results["restore_token"].unpack())
        answer(sender, request, code, results if code == 0 else {})
        if method == "Start":
            changed()
    if asks:
        waiting.append(go_on)
        say("asks")
    else:
        go_on()


def do(line):
    word, *rest = line.split()
    mine = [path for path in sessions if sessions[path]["kind"] == "GlobalShortcuts"]
    if word in ("Activated", "Deactivated"):
        for session in ["/of/another"] + mine:
            bus.emit_signal(None, ROOT, NAME + "GlobalShortcuts", word, GLib.Variant("(osta{sv})", (session, "dictate", 1, {})))
    elif word == "Closed":
        for path in list(sessions):
            bus.emit_signal(None, path, NAME + "Session", word, GLib.Variant("(a{sv})", ({},)))
            bus.unregister_object(sessions.pop(path)["object"])
    elif word in ("allow", "deny", "break"):
        waiting.pop(0)(("allow", "deny", "break").index(word))
    elif word == "refuse":
        state["refuses"] = True
    elif word == "answer":
        state["twice"] = True
    elif word == "offer":
        state["offer"], state["owner"] = json.load(open(rest[0])), None
        changed()
        say("offered")
    elif word == "read":
        owner = sessions.get(state["owner"])
        if owner and rest[0] in owner["types"]:
            state["serial"] += 1
            transfers[state["serial"]] = (rest[1], None)
            bus.emit_signal(owner["client"], ROOT, NAME + "Clipboard", "SelectionTransfer",
                            GLib.Variant("(osu)", (state["owner"], rest[0], state["serial"])))
        else:
            value = (state["offer"] or {}).get(rest[0])
            if value is not None:
                open(rest[1], "wb").write(bytes.fromhex(value))
            say("given" if value is not None else "refused", rest[1])


def read(*_):
    lines = os.read(0, 65536).decode().split("\n")
    for line in filter(None, lines):
        do(line)
    return lines != [""] or loop.quit()


def number(_bus, _sender, _path, interface, name):
    return GLib.Variant("u", 1 if name == "AvailableDeviceTypes" else 2)


for name in ("org.freedesktop.host.portal.Registry", *(NAME + kind for kind in ("GlobalShortcuts", "RemoteDesktop", "Clipboard"))):
    bus.register_object(ROOT, interfaces[name], called, number, None)
Gio.bus_own_name_on_connection(bus, NAME + "Desktop", Gio.BusNameOwnerFlags.NONE, lambda *_: say("ready"), None)
GLib.io_add_watch(0, GLib.PRIORITY_DEFAULT, GLib.IO_IN | GLib.IO_HUP, read)
loop.run()
