#!/usr/bin/env python3
"""Checks the boundaries between the modules, from the #include lines of the sources.

- The core (everything but Interface, MRMUpdateUI, Shell, Platform/Qt, Platform/Linux and Workers) includes no header of Qt and of
  no desktop library.
- Some libraries stay behind one facade: ICU behind Foundation/Text, OpenSSL behind Foundation/Crypto, JSON in no header.
- The modules have no cycle, and only Shell knows the concrete adapters. Workers know no desktop, but
  for the clipboard keeper, which goes on serving what the X11 adapter served; all may confine themselves.
- A module includes only what its CMakeLists.txt names as a dependency (directly or through another module), and names
  nothing that it does not include.
- The picture in docs/architecture.md is the one that the CMake files make; `--draw` puts it there.
"""

import pathlib
import re
import sys
import tempfile

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
DESKTOP = ("Platform/Linux", "Platform/Qt", "Interface", "Shell", "MRMUpdateUI")
DESKTOP_HEADER = re.compile(
    r"^(Q[A-Z]\w*|Qt\w*/.*|q[a-z]+\.h|xcb/.*|X11/.*|xkbcommon/.*|pulse/.*|libsecret/.*|systemd/.*|wayland-.*|plist/.*"
    r"|cld2/.*|compact_lang_det.*|curl/.*|glib.*|gio/.*|dbus/.*|CLI/.*|pocketsphinx.*|sphinxbase/.*)$")

ADAPTERS = "Platform/Linux/"
SERVING = ("Platform/Linux/Clipboard", "Platform/Linux/Wayland", "Platform/Linux/X11")
# What the launcher holds children with, they hold themselves with.
CONFINEMENT = "Platform/Linux/Confinement"
# Workers bring recognisers and the network library; they have no desktop.
WORKER_LIBRARY = re.compile(r"^(curl/.*|pocketsphinx.*|sphinxbase/.*)$")
PICTURE = re.compile(r"(<!-- modules -->\n```\n)(.*?)(```\n)", re.DOTALL)


def modules_of(root):
    """Maps module name -> folder, longest folders first so that Platform/Linux/X wins over Platform."""
    house = root / "MRMPrototype"
    folders = [file.parent for file in house.rglob("CMakeLists.txt") if file.parent != house]
    named = {}
    for folder in folders:
        text = (folder / "CMakeLists.txt").read_text()
        if "murmel_module" in text:
            named[str(folder.relative_to(house))] = folder
    for folder in [*root.glob("MRM*"), *root.glob("Workers/*")]:
        if folder.name != "MRMPrototype" and (folder / "CMakeLists.txt").exists():
            named[str(folder.relative_to(root))] = folder
    return named


def module_for(path, modules):
    """The module that a path, relative to MRMPrototype or to the root, lies in."""
    parts = pathlib.PurePosixPath(path).parts
    for length in range(len(parts) - 1, 0, -1):
        name = "/".join(parts[:length])
        if name in modules:
            return name
    return None


def declared_dependencies(folder, modules):
    """The modules that the folder's CMake file names after DEPENDS, links as murmel_<module>, or compiles files of."""
    by_target = {name.replace("/Linux/", "/").replace("/", "_").lower(): name for name in modules}
    by_target.update({name.replace("/", "").removeprefix("Workers").lower(): name for name in modules
                      if name.startswith("Workers/")})
    by_target["workercommon"] = "Workers/Common"
    text = re.sub(r"#.*", "", (folder / "CMakeLists.txt").read_text())
    words = set()
    for match in re.finditer(r"DEPENDS\s+([^)]*?)(?:\bLIBRARIES\b|\bSOURCES\b|\))", text, re.DOTALL):
        words |= set(match.group(1).split())
    for match in re.finditer(r"target_link_libraries\(\s*\S+([^)]*)\)", text):
        words |= {word.removeprefix("murmel_") for word in match.group(1).split() if word.startswith("murmel_")}
    named = {by_target[word.lower()] for word in words if word.lower() in by_target}
    named |= set(re.findall(r"/MRMPrototype/([A-Za-z/]+)\"", text)) & set(modules)
    return {name for name in named if modules[name] != folder}


def is_inside(file, folder):
    return (pathlib.PurePosixPath("MRMPrototype") / folder) in file.parents


def problems_of(root):
    modules = modules_of(root)
    declared = {name: declared_dependencies(folder, modules) for name, folder in modules.items()}
    problems, edges = [], {name: {} for name in modules}

    others = set(modules.values())
    for name, folder in modules.items():
        sources = [file for file in folder.rglob("*") if file.suffix in (".h", ".cpp")
                   and next(parent for parent in file.parents if parent in others) == folder]
        is_core, is_worker = not name.startswith(DESKTOP), name.startswith("Workers/")
        for file in sources:
            where = file.relative_to(root)
            for kind, header in INCLUDE.findall(file.read_text()):
                if is_core and DESKTOP_HEADER.match(header) and not (is_worker and WORKER_LIBRARY.match(header)):
                    problems.append(f"{where}: {'a worker' if is_worker else 'the core'} includes the desktop header {header}")
                if header.startswith("unicode/") and not is_inside(where, "Foundation/Text"):
                    problems.append(f"{where}: ICU is used behind Foundation/Text only, not by {name}")
                if header.startswith("openssl/") and not is_inside(where, "Foundation/Crypto"):
                    problems.append(f"{where}: OpenSSL is used behind Foundation/Crypto only, not by {name}")
                if header.startswith("nlohmann/") and not str(where).endswith("Foundation/Json/Json.cpp"):
                    problems.append(f"{where}: JSON's library is used behind Foundation/Json only, not by {name}")
                if kind == '"':
                    target = module_for(header, modules)
                    if target and target != name:
                        edges[name].setdefault(target, f"{where} includes {header}")

    for name, targets in edges.items():
        for target, reason in targets.items():
            if target.startswith(("Platform/Linux", "Platform/Qt")) and not name.startswith(
                    ("Shell", "Platform/Linux", "Platform/Qt")) and not (
                        "Workers/ClipboardKeeper/" in reason and target in SERVING) and not (
                            name.startswith("Workers") and target == CONFINEMENT):
                problems.append(f"{reason}: only Shell knows the adapters")
            if target == "Platform/Fake":
                problems.append(f"{reason}: fakes are for the tests")

    problems += cycles_of(edges)

    reach = reachable_from(declared)
    for name, targets in edges.items():
        for target, reason in targets.items():
            if target not in reach(name):
                problems.append(f"{reason}: but {name}/CMakeLists.txt does not depend on {target}")
        for unused in sorted(declared[name] - set(targets)):
            problems.append(f"{name}/CMakeLists.txt depends on {unused}, which nothing there includes")

    page = root / "docs/architecture.md"
    drawn = PICTURE.search(page.read_text()) if page.exists() else None
    if drawn and drawn.group(2) != picture_of(declared):
        problems.append(f"docs/architecture.md draws another graph: {__file__} --draw")
    return problems


def reachable_from(declared):
    found = {}

    def reach(name, path=()):
        if name not in found and name not in path:
            below = [reach(target, path + (name,)) | {target} for target in declared[name]]
            found[name] = set().union(*below)
        return found.get(name, set())

    return reach


def picture_of(declared):
    """The modules layer by layer from below, with the dependencies that do not follow from others. The adapters of the
    desktop are one."""
    declared = {name: {target if not target.startswith(ADAPTERS) else ADAPTERS + "*" for target in targets}
                for name, targets in declared.items()}
    adapters = {name: declared.pop(name) for name in list(declared) if name.startswith(ADAPTERS)}
    if adapters:
        declared[ADAPTERS + "*"] = set().union(*adapters.values()) - {ADAPTERS + "*"}
    reach = reachable_from(declared)
    heights = {}

    def height(name):
        if name not in heights:
            heights[name] = 1 + max((height(target) for target in declared[name]), default=-1)
        return heights[name]

    lines, last = [], 0
    for name in sorted(declared, key=lambda each: (height(each), each)):
        direct = {target for target in declared[name]
                  if not any(target in reach(other) for other in declared[name] if other != target)}
        if height(name) != last:
            lines.append("")
            last = height(name)
        lines.append(f"{name:<24}<- {'  '.join(sorted(direct))}" if direct else name)
    return "\n".join(lines) + "\n"


def cycles_of(edges):
    problems, state = [], {}

    def visit(name, path):
        if state.get(name) == "done":
            return
        if state.get(name) == "open":
            cycle = path[path.index(name):] + [name]
            problems.append("modules form a cycle: " + " -> ".join(cycle))
            return
        state[name] = "open"
        for target in edges[name]:
            visit(target, path + [name])
        state[name] = "done"

    for name in edges:
        visit(name, [])
    return problems


def self_test():
    """Each planted fault must be found; the clean house must pass."""
    clean = {
        "MRMPrototype/CMakeLists.txt": "",
        "MRMPrototype/Foundation/CMakeLists.txt": "murmel_module(NAME Foundation)",
        "MRMPrototype/Foundation/Text/Text.cpp": "#include <unicode/uchar.h>\n",
        "MRMPrototype/Audio/CMakeLists.txt": "murmel_module(NAME Audio DEPENDS Foundation)",
        "MRMPrototype/Audio/Level.h": '#include "Foundation/Text/Text.h"\n',
        "MRMPrototype/Shell/CMakeLists.txt": "murmel_module(NAME Shell DEPENDS Audio LIBRARIES Qt6::Core)",
        "MRMPrototype/Shell/main.cpp": '#include <QObject>\n#include "Audio/Level.h"\n',
    }
    faults = {
        "desktop header": {"MRMPrototype/Audio/Level.cpp": "#include <QString>\n"},
        "behind Foundation": {"MRMPrototype/Audio/Level.cpp": "#include <unicode/ustring.h>\n"},
        "behind Foundation/Json": {"MRMPrototype/Audio/Level.cpp": "#include <nlohmann/json.hpp>\n"},
        "form a cycle": {"MRMPrototype/Foundation/Bad.h": '#include "Audio/Level.h"\n'},
        "does not depend on": {"MRMPrototype/Audio/Bad.h": '#include "Shell/AppDelegate.h"\n'},
        "which nothing there includes": {"MRMPrototype/Audio/Level.h": ""},
        "a worker includes": {"Workers/Common/CMakeLists.txt": "", "Workers/Common/Bad.cpp": "#include <QString>\n"},
        "draws another graph": {"docs/architecture.md": "<!-- modules -->\n```\nShell <- Foundation\n```\n"},
    }
    for expected, extra in {None: {}, **faults}.items():
        with tempfile.TemporaryDirectory() as folder:
            root = pathlib.Path(folder)
            for name, text in {**clean, **extra}.items():
                (root / name).parent.mkdir(parents=True, exist_ok=True)
                (root / name).write_text(text)
            problems = problems_of(root)
            if expected is None:
                assert not problems, problems
            else:
                assert any(expected in problem for problem in problems), (expected, problems)


if sys.argv[1] == "--self-test":
    self_test()
    print("every planted fault was found")
elif sys.argv[1] == "--draw":
    house = pathlib.Path(__file__).parents[3]
    modules = modules_of(house)
    picture = picture_of({name: declared_dependencies(folder, modules) for name, folder in modules.items()})
    page = house / "docs/architecture.md"
    page.write_text(PICTURE.sub(lambda match: match.group(1) + picture + match.group(3), page.read_text()))
else:
    found = problems_of(pathlib.Path(sys.argv[1]))
    print("\n".join(found) or "the layers hold")
    sys.exit(1 if found else 0)
