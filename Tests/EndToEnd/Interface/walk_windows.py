#!/usr/bin/python3
"""usage: walk_windows.py GALLERY     (inside a private session with a bus and an X server)
Walks every window over AT-SPI, as a screen reader does: each text of the list is there for it, and whatever can be
operated has a name."""
import os, subprocess, sys
import gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib

REQUIRED = """
Looks for a phrase pause after at least 3 seconds, then inserts recognized and formatted phrases—not individual words.
Automatic correction routing
By language
Selected model only
Optional cleanup for common Russian and English fillers. Unlike Conservative punctuation, this intentionally removes spoken words.
One replacement per line, for example: postgresql = PostgreSQL
History is optional and off by default.
Auto-delete history
Never delete automatically
After 5 minutes
After 1 day
After 1 week
After 1 month
After 3 months
All languages, automatically
The languages I select
One language only
Top edge
Right edge
Bottom edge
Left edge
Hold the shortcut while speaking, then release it.
Input Monitoring lets your configured shortcut work while other apps are active.
Ready · kept warm in memory
Recommended for mixed languages: Gemma 4 E2B Q4 · Recommended
Use a multilingual model in Conservative mode. Murmel projects punctuation onto the original ASR words, so a model cannot remove or replace them.
Your previous model, Qwen3 4B Q4 · Best quality, is unavailable. Gemma was selected so you can stay offline. You can download and select your previous model in Speech Models.
Secure local storage is unavailable. Changes remain in memory for this session and may not survive relaunch.
Qwen3 0.6B Q8 · Fast baseline
Download the required Parakeet speech model to use dictation
Speech Models
Full edition · Ready offline · Models included
Tip jar
Record a shortcut
Press and release your shortcut three times
Fn, Alt, and Ctrl work alone. Super and Shift must be combined with another modifier or a key. Press Esc to cancel.
Gemma 4 E2B Q4 · Recommended
Qwen3 1.7B Q8 · Balanced
Qwen3 4B Q4 · Best quality
SAGE 95M · Russian
Parakeet TDT 0.6B v3 Q8 · Recommended
""".strip().splitlines()
OPERABLE = {Atspi.Role.CHECK_BOX, Atspi.Role.PUSH_BUTTON, Atspi.Role.COMBO_BOX, Atspi.Role.LIST, Atspi.Role.TABLE,
            Atspi.Role.TEXT, Atspi.Role.ENTRY, Atspi.Role.RADIO_BUTTON, Atspi.Role.SLIDER}


def walk(node, path):
    """Every object below, with the way to it; what goes away meanwhile is left out."""
    yield node, path
    for index in range(min(node.get_child_count(), 400)):
        child = node.get_child_at_index(index)
        if child is not None:
            yield from walk(child, path + [child.get_role_name()])


def find(pid):
    desktop = Atspi.get_desktop(0)
    for index in range(desktop.get_child_count()):
        application = desktop.get_child_at_index(index)
        if application is not None and application.get_process_id() == pid and application.get_child_count() >= 4:
            return application
    return None


os.environ.pop("NO_AT_BRIDGE", None)
loop = GLib.MainLoop()
shown = Atspi.EventListener.new(lambda event: find(gallery.pid) and loop.quit())
for kind in ("window:create", "window:activate", "object:children-changed"): shown.register(kind)
gallery = subprocess.Popen([sys.argv[1], "--troubles"], env=os.environ | {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON": "1"})
try:
    GLib.timeout_add_seconds(20, loop.quit)
    loop.run()
    if (application := find(gallery.pid)) is None: sys.exit("the windows do not show up over AT-SPI")
    texts, nameless = set(), []
    for node, path in walk(application, []):
        name, description = node.get_name() or "", node.get_description() or ""
        texts |= {name, description}
        hidden = node.get_role() == Atspi.Role.LIST and path[-2:-1] == ["combo box"]  # the list inside a choice
        if node.get_role() in OPERABLE and not name and not hidden: nameless.append(" > ".join(path))
    everything = "\n".join(texts)
    missing = [text for text in REQUIRED if text not in everything]
    for text in missing: print("missing:", text)
    for path in nameless: print("without a name:", path)
    print(f"{len(texts)} texts")
    sys.exit(bool(missing or nameless))
finally:
    gallery.kill()
