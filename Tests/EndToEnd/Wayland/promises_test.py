#!/usr/bin/env python3
"""What a desktop is promised besides a text that arrives: while the screen is locked nothing is recorded and nothing pasted,
and the words are there afterwards; password fields get nothing; phrases arrive while somebody is still speaking.

usage: promises_test.py BUILD, in private-session --sway|--kwin|--gnome --xwayland --pulse --keyring with MURMEL_SCREEN_LOCK=1"""
import re

from dictation_test import *

FIELD = HERE.parent / "Delivery" / "field.py"
LONG = "/usr/share/pocketsphinx/test/data/librivox/sense_and_sensibility_01_austen_64kb-0930.wav"


def call(service, path, method, *arguments):
    command = ["gdbus", "call", "--session", "-d", service, "-o", path, "-m", method, *arguments]
    return subprocess.run(command, capture_output=True, text=True).stdout


class Locker:
    """The desktop's own."""

    def __init__(self):
        self.process = None
        if GNOME:
            self.shell("Main.screenShield = new imports.ui.screenShield.ScreenShield()")

    @staticmethod
    def shell(script):
        return call("org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell.Eval", script)

    def is_active(self):
        if GNOME:
            return "true" in call("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver.GetActive")
        if KWIN:
            return "true" in call("org.freedesktop.ScreenSaver", "/ScreenSaver", "org.freedesktop.ScreenSaver.GetActive")
        return self.process is not None and self.process.poll() is None

    def lock(self):
        if GNOME:
            call("org.gnome.ScreenSaver", "/org/gnome/ScreenSaver", "org.gnome.ScreenSaver.Lock")
        elif KWIN:
            call("org.freedesktop.ScreenSaver", "/ScreenSaver", "org.freedesktop.ScreenSaver.Lock")
        else:
            self.process = subprocess.Popen(["swaylock", "-c", "000000"], stderr=subprocess.DEVNULL)
        assert until(self.is_active), "the screen is not locked"

    def unlock(self):
        if GNOME:
            self.shell("Main.screenShield._continueDeactivate(false)")  # as after a right password
        elif KWIN:
            subprocess.run(os.environ["MURMEL_UNLOCK"], shell=True, check=True)
        else:
            self.process.send_signal(signal.SIGUSR1)
        assert until(lambda: not self.is_active()), "the screen stays locked"


def hold(_murmel, down):
    keys(*(f"{'down' if down else 'up'} {key}" for key in ((CONTROL, SPACE) if down else (SPACE, CONTROL))))


def settled(murmel):
    return murmel.log.read_text().count("paste_settled")


def toggle(murmel, _down):
    """While a key is held on GNOME nothing can be pasted."""
    subprocess.run([murmel.binary, "toggle"], check=True, stdout=subprocess.DEVNULL)


def speak(murmel, recording=RECORDING, before_the_end=lambda: None, after_the_end=lambda: None,
          press=hold):
    """One dictation; the text of the history."""
    known, started = murmel.newest(), time.monotonic()
    for _attempt in range(5):  # GNOME gives the shortcut back a moment after the screen
        press(murmel, True)
        if until(lambda: murmel.since(started, "listening"), 4):
            break
        press(murmel, False)
    assert murmel.since(started, "listening"), murmel.states[-3:]
    subprocess.run(["paplay", "--latency-msec=20", "-d", "mic", recording], check=True)
    before_the_end()
    press(murmel, False)
    after_the_end()
    assert until(lambda: murmel.newest() not in (None, known), 60), "the words are lost"
    return murmel.newest()[1]


def locked(murmel, clipboard, read):
    """A locked screen at each moment of a dictation."""
    locker = Locker()
    locker.lock()
    started, before, pastes = time.monotonic(), read(), settled(murmel)
    hold(murmel, True)
    subprocess.run([murmel.binary, "toggle"], capture_output=True)
    assert until(lambda: any("locked" in message for message in murmel.messages)), murmel.messages
    assert not murmel.since(started, "listening"), "it listens while the screen is locked"
    hold(murmel, False)
    locker.unlock()
    for moment in "before_the_end", "after_the_end":
        words = speak(murmel, **{moment: locker.lock})
        assert clipboard.text() != words, f"{moment}: the words are on the clipboard of a locked screen"
        locker.unlock()
        assert until(lambda: clipboard.text() == words), f"{moment}: the words are not there afterwards"
        clipboard.__init__()
    assert (read(), settled(murmel)) == (before, pastes), "something was pasted"


def secret(murmel, clipboard, build):
    """Password fields of each toolkit."""
    refusals = lambda: re.findall(r"paste_refused reason=(\w+)", murmel.log.read_text())
    call("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties.Set", "org.a11y.Status", "IsEnabled", "<true>")
    page = SESSION / "password.html"
    page.write_text("<input type=password autofocus>")
    environment = {key: value for key, value in os.environ.items() if key != "NO_AT_BRIDGE"} | {
        "GDK_BACKEND": "wayland", "QT_QPA_PLATFORM": "wayland", "MOZ_ENABLE_WAYLAND": "1"}
    for name, command in {
            "gtk3": [sys.executable, FIELD, "gtk3", "password"],
            "gtk4": [sys.executable, FIELD, "gtk4", "password"],
            "qt6": [f"{build}/tests/qt-editor", "--field", "password"],
            "chromium": ["chromium", "--no-sandbox", "--ozone-platform=wayland", "--disable-gpu", "--no-first-run",
                         "--password-store=basic", "--force-renderer-accessibility", f"--user-data-dir={SESSION}/secret",
                         f"--app={page.as_uri()}"]}.items():
        log = (SESSION / "field.log").open("w")
        process = subprocess.Popen(command, env=environment, stdout=log, stderr=log)
        pastes, why = settled(murmel), "no_target"
        while why == "no_target" and process.poll() is None:  # its window is not there yet
            known = len(refusals())
            words = speak(murmel)
            until(lambda: len(refusals()) > known, 5)
            why = refusals()[-1] if len(refusals()) > known else "pasted"
        assert why == "secure_input", f"{name}: {why}"
        assert until(lambda: clipboard.text() == words), f"{name}: the words are not on the clipboard"
        assert settled(murmel) == pastes, f"{name}: pasted"
        process.kill()
        process.wait()
        clipboard.__init__()


def live(murmel, clipboard, read):
    """Phrases arrive before the end, and nothing is missing in the end."""
    before, early = read(), []
    words = speak(murmel, LONG, before_the_end=lambda: early.append(until(lambda: read() != before, 120)),
                  press=toggle if GNOME else hold)
    assert early == [True], "nothing came before the end"
    assert until(lambda: read() == before + words, 30), f"not {words!r} but {read()[len(before):]!r}"
    assert until(clipboard.is_as_it_was), "the clipboard is another"


def keep(murmel, build):
    file = SESSION / "gtk4.txt"
    command, environment = program("gtk4", build, file)
    process = subprocess.Popen(command, env={**os.environ, **environment})
    read = lambda: file.read_text() if file.exists() else ""
    clipboard = Clipboard()
    assert has_the_keyboard(read)
    for promise in live, locked:
        promise(murmel, clipboard, read)
        print(f"{promise.__name__}: kept", flush=True)
    process.terminate()
    process.wait()
    secret(murmel, clipboard, build)
    print("secret: kept", flush=True)


def main():
    build = sys.argv[1]
    murmel = Murmel(build, **{"settings.processWhileRecording": True, "settings.insertWhileRecording": True})
    try:
        keep(murmel, build)
    except AssertionError:
        print(murmel.states[-6:], murmel.messages[-9:], murmel.log.read_text()[-3000:])
        raise
    murmel.quit()


main()
