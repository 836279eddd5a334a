#!/usr/bin/env python3
"""Whole dictations on a desktop: the shortcut is held on the user's keyboard, a recording is played into the microphone, and
the words arrive in real applications, once, with the clipboard as it was.

usage: dictation_test.py BUILD [--count N] [--programs NAME,…] [--held]
Runs in `private-session --sway|--kwin|--gnome --xwayland --pulse --keyring`, or with --wm in their stead to compare with X11. A
program that does not run is a failure."""
import argparse
import http.server
import json
import os
import pathlib
import signal
import statistics
import subprocess
import sys
import threading
import time

from gi.repository import Gio, GLib

HERE = pathlib.Path(__file__).parent
SESSION = pathlib.Path(os.environ["MURMEL_SESSION_DIRECTORY"])
CONTROL, SPACE, SHIFT = 29, 57, 42
DIGITS = {key: str((key - 1) % 10) for key in range(2, 12)}
RECORDING = "/usr/share/pocketsphinx/test/data/cards/001.wav"
DESKTOP = os.environ.get("XDG_CURRENT_DESKTOP", "X11")
GNOME, KWIN, X11 = (DESKTOP == name for name in ("GNOME", "KDE", "X11"))
PAGE = b"""<!doctype html><meta charset=utf-8><textarea autofocus style="width:90%;height:300px"></textarea><script>
const t=document.querySelector('textarea');t.focus();let last=Promise.resolve();
t.addEventListener('input',()=>{const body=t.value;last=last.then(()=>fetch('/',{method:'POST',body}))});</script>"""


def until(condition, seconds=20):
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if condition():
            return True
        time.sleep(0.01)
    return False


def succeeds(*command):
    return subprocess.run(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0


def keys(*lines):
    if X11:
        words = [line.split() for line in lines]
        subprocess.run(["xdotool", *(word for what, key in words
                                     for word in ({"tap": "key"}.get(what, "key" + what), str(int(key) + 8)))], check=True)
        return
    with open(os.environ["MURMEL_KEYBOARD"], "w") as keyboard:
        keyboard.write("\n".join(lines) + "\n")


class Page:
    """A page with a text area, which tells what stands in it."""

    def __init__(self, file):
        class Handler(http.server.BaseHTTPRequestHandler):
            def answer(self, body):
                self.send_response(200)
                self.send_header("Content-Type", "text/html")
                self.end_headers()
                self.wfile.write(body)

            def do_GET(self):
                self.answer(PAGE)

            def do_POST(self):
                file.write_bytes(self.rfile.read(int(self.headers["Content-Length"])))
                self.answer(b"")

            def log_message(self, *_):
                pass

        self.server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
        threading.Thread(target=self.server.serve_forever, daemon=True).start()
        self.address = f"http://127.0.0.1:{self.server.server_port}/"


def program(name, build, file):
    """Command and environment of a program that writes what it is given to the file."""
    qt = [f"{build}/tests/qt-editor", str(file)]
    return {
        "gtk3": lambda: ([sys.executable, str(HERE / "editor.py"), "3", str(file)], {"GDK_BACKEND": "wayland"}),
        "gtk4": lambda: ([sys.executable, str(HERE / "editor.py"), "4", str(file)],
                         {"GDK_BACKEND": "wayland", "GSK_RENDERER": "cairo"}),
        "qt6": lambda: (qt, {"QT_QPA_PLATFORM": "wayland"}),
        # KWin gives a screen without a size in millimetres, by which foot divides.
        "terminal": lambda: ((["konsole", "--nofork", "-e"] if KWIN else ["foot"]) +
                             ["sh", "-c", f"stty raw -echo; exec cat >'{file}'"], {"QT_QPA_PLATFORM": "wayland"}),
        "x11": lambda: ([sys.executable, str(HERE / "editor.py"), "3", str(file)], {"GDK_BACKEND": "x11"}),
        "chromium": lambda: (["chromium", "--no-sandbox", "--ozone-platform=wayland", "--disable-gpu", "--no-first-run",
                              "--password-store=basic", f"--user-data-dir={SESSION}/chromium",
                              f"--app={Page(file).address}"], {}),
    }[name]()


class Clipboard:
    """What the user has copied and selected, as the desktop's own program sees it."""

    def __init__(self):
        image = b"\x89PNG\r\n\x1a\n" + bytes(range(256)) * 20000
        bridged = GNOME or X11
        copy = ["xclip", "-selection"] if bridged else ["wl-copy"]
        paste = ["xclip", "-o", "-selection"] if bridged else ["wl-paste", "-n"]
        self.contents = []
        # wl-copy does not find KWin's selection.
        selected = [] if KWIN else [("primary", "UTF8_STRING", b"selected")]
        for place, form, contents in [("clipboard", "image/png", image), *selected]:
            where = [place] if bridged else ["--primary"] if place == "primary" else []
            subprocess.run([*copy, *where, "-t", form], input=contents, stdout=subprocess.DEVNULL, check=True)
            self.contents.append(([*paste, *where, "-t", form], contents))
        self.paste_text = [*paste, "clipboard", "-t", "UTF8_STRING"] if bridged else paste

    def text(self):
        return subprocess.run(self.paste_text, capture_output=True, timeout=10).stdout.decode(errors="replace")

    def is_as_it_was(self):
        return all(subprocess.run(paste, capture_output=True, timeout=10).stdout == contents for paste, contents in self.contents)


def has_key_ring():
    """Which begins to exist some time after its service does; without it the history stays in memory."""
    answer = subprocess.run(["gdbus", "call", "--session", "-d", "org.freedesktop.secrets", "-o", "/org/freedesktop/secrets", "-m",
                             "org.freedesktop.Secret.Service.ReadAlias", "default"], capture_output=True, text=True).stdout
    return "/collection/" in answer


class Murmel:
    def __init__(self, build, **others):
        assert until(has_key_ring, 60), "there is no key ring"
        self.binary = f"{build}/bin/murmel"
        settings = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "MRM" / "defaults.json"
        settings.parent.mkdir(parents=True, exist_ok=True)
        settings.write_text(json.dumps({"onboarding.completed": True, "settings.shortcut": "controlSpace",
                                        "settings.historyEnabled": True, **others}))
        self.states, self.messages = [], [""]  # the states with the times at which they began
        self.bus = Gio.bus_get_sync(Gio.BusType.SESSION)
        self.bus.signal_subscribe(None, "org.freedesktop.DBus.Properties", "PropertiesChanged", None, "app.murmel.Dictation1",
                                  Gio.DBusSignalFlags.NONE, self.hear)
        threading.Thread(target=GLib.MainLoop().run, daemon=True).start()
        self.log = SESSION / "murmel.log"
        self.process = subprocess.Popen([self.binary], stdout=self.log.open("w"), stderr=subprocess.STDOUT)
        assert until(lambda: succeeds(self.binary, "status"), 120), "Murmel does not start"

    def hear(self, _bus, _sender, _path, _interface, _signal, arguments):
        values = arguments.unpack()[1]
        self.messages.append(values["Message"])
        if not self.states or self.states[-1][1] != values["State"]:
            self.states.append((time.monotonic(), values["State"]))

    def since(self, start, state):
        """When it began to be in the state, after a time."""
        return next((began for began, what in list(self.states) if began >= start and what == state), None)

    def newest(self):
        """The newest of the texts that were dictated; empty when there is none."""
        # A key ring that is busy does not give the key in time: then there is nothing to be seen for once.
        found = subprocess.run([self.binary, "history", "list", "--json"], capture_output=True, text=True)
        entries = json.loads(found.stdout or "[]")
        return (entries[0]["id"], entries[0]["text"]) if entries else None

    def quit(self):
        subprocess.run([self.binary, "quit"], check=False)
        assert self.process.wait(60) == 0, self.log.read_text()


def has_the_keyboard(read):
    """Whether what is typed stands in the program in the end. The last key that was typed is the last that stands there."""
    for key, digit in list(DIGITS.items()) * 3:
        keys(f"tap {key}")
        if until(lambda: read().endswith(digit), 2):
            return True
    return False


def dictate(murmel, read, holds):
    """The seconds from the press to the open microphone and from the release to the text; or what went wrong. The text is what
    the history has: how well it was recognised is no matter here."""
    before, known = read(), murmel.newest()
    pressed = time.monotonic()
    keys(f"down {CONTROL}", f"down {SPACE}")
    if not until(lambda: murmel.since(pressed, "listening"), 60):
        keys(f"up {SPACE}", f"up {CONTROL}")
        return None, f"the microphone was not opened: {murmel.states[-3:]} {murmel.messages[-1]}"
    listening = murmel.since(pressed, "listening") - pressed
    subprocess.run(["paplay", "--latency-msec=20", "-d", "mic", RECORDING], check=True)
    released = time.monotonic()
    keys(f"up {SPACE}", f"up {CONTROL}", *([f"down {SHIFT}"] if holds else []))
    # Nobody can let go of it in the user's stead on GNOME: the paste waits.
    early = holds and GNOME and until(lambda: read() != before, 1)
    if holds and GNOME:
        keys(f"up {SHIFT}")
    came = until(lambda: read() != before, 60)
    took = time.monotonic() - released
    over = until(lambda: murmel.since(released, "delivered") or murmel.since(released, "ready"), 60)
    if holds and not GNOME:
        keys(f"up {SHIFT}")
    story = f"{[(round(at - released, 3), what) for at, what in murmel.states if at > released]} {murmel.messages[-1]!r}"
    newest = known

    def is_kept():
        nonlocal newest
        newest = murmel.newest()
        return newest not in (None, known)

    if early or not over or not until(is_kept, 30):
        return None, f"early {early}, over {over}, {read()[len(before):]!r} stands there; {story}"
    text = newest[1]
    if not came or not until(lambda: read() == before + text, 20):
        return None, f"not {text!r} has come, but {read()[len(before):]!r}; {story}"
    return (listening, took), None


def run(name, murmel, build, count, holds):
    file = SESSION / f"{name}.txt"
    command, environment = program(name, build, file)
    log = (SESSION / f"{name}.log").open("w")
    process = subprocess.Popen(command, env={**os.environ, **environment}, stdout=log, stderr=log)

    def read():
        return file.read_text(errors="replace") if file.exists() else ""

    good, times, faults = 0, [], []
    clipboard = Clipboard()
    for number in range(1, count + 1):
        if number == 1 and not has_the_keyboard(read):
            faults.append(f"it takes no keys: {read()!r} {(SESSION / f'{name}.log').read_text()[-400:]}")
            print(f"  {name} {faults[-1]}", flush=True)
            break
        done, fault = dictate(murmel, read, holds and number % 2 == 0)
        if not until(clipboard.is_as_it_was, 30):
            fault = f"{fault or ''} the clipboard is another"
            clipboard = Clipboard()
        if process.poll() is not None:
            fault = f"the program has ended: {(SESSION / f'{name}.log').read_text()[-400:]}"
        if fault:
            faults.append(f"{number}: {fault}")
            print(f"  {name} {faults[-1]}", flush=True)
        else:
            good += 1
            times.append(done)
        if len(faults) > 5:
            break
    process.send_signal(signal.SIGTERM)
    process.wait()
    middle = [f"{statistics.median(column) * 1000:.0f}" for column in zip(*times)] or ["-", "-"]
    print(f"{name:10} {good:3} of {count:3}   press to listening {middle[0]} ms, release to text {middle[1]} ms", flush=True)
    return not faults


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("build")
    parser.add_argument("--count", type=int, default=2)
    parser.add_argument("--programs", default="gtk3,qt6,terminal,x11")
    parser.add_argument("--held", action="store_true", help="hold Shift at every second paste")
    options = parser.parse_args()
    murmel = Murmel(options.build)
    results = [run(name, murmel, options.build, options.count, options.held)
               for name in options.programs.split(",")]
    murmel.quit()
    if not all(results):
        print("".join(line[:160] + "\n" for line in murmel.log.read_text().splitlines() if "dictation_stop" not in line)[-3000:])
    sys.exit(0 if all(results) else 1)


if __name__ == "__main__":
    main()
