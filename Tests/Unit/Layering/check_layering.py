#!/usr/bin/env python3
"""Checks the boundaries between the modules, from the #include lines of the sources.

- The core (everything but Interface, Shell, Platform/Qt, Platform/Linux and Workers) includes no header of Qt and of
  no desktop library.
- Some libraries stay behind one facade: ICU behind Foundation/Text, OpenSSL behind Foundation/Crypto, JSON in no header.
- The modules have no cycle, and only Shell knows the concrete adapters.
- A module includes only what its CMakeLists.txt names as a dependency (directly or through another module).
"""

import pathlib
import re
import sys
import tempfile

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.MULTILINE)
DESKTOP = ("Platform/Linux", "Platform/Qt", "Interface", "Shell")
DESKTOP_HEADER = re.compile(
    r"^(Q[A-Z]\w*|Qt\w*/.*|q[a-z]+\.h|xcb/.*|X11/.*|xkbcommon/.*|pulse/.*|libsecret/.*|systemd/.*|wayland-.*|plist/.*"
    r"|cld2/.*|compact_lang_det.*|curl/.*|glib.*|gio/.*|dbus/.*|CLI/.*|pocketsphinx.*|sphinxbase/.*)$")


def modules_of(root):
    """Maps module name -> folder, longest folders first so that Platform/Linux/X wins over Platform."""
    house = root / "MRMPrototype"
    folders = [file.parent for file in house.rglob("CMakeLists.txt") if file.parent != house]
    named = {}
    for folder in folders:
        text = (folder / "CMakeLists.txt").read_text()
        if "murmel_module" in text:
            named[str(folder.relative_to(house))] = folder
    for folder in root.glob("MRM*"):
        if folder.name != "MRMPrototype" and (folder / "CMakeLists.txt").exists():
            named[folder.name] = folder
    return named


def module_for(path, modules):
    """The module that a path, relative to MRMPrototype or to the root, lies in."""
    parts = pathlib.PurePosixPath(path).parts
    for length in range(len(parts) - 1, 0, -1):
        name = "/".join(parts[:length])
        if name in modules:
            return name
    return None


def declared_dependencies(folder):
    text = re.sub(r"#.*", "", (folder / "CMakeLists.txt").read_text())
    match = re.search(r"DEPENDS\s+([^)]*?)(?:\bLIBRARIES\b|\bSOURCES\b|\))", text + ")", re.DOTALL)
    return set(match.group(1).split()) if match else set()


def is_inside(file, folder):
    return (pathlib.PurePosixPath("MRMPrototype") / folder) in file.parents


def problems_of(root):
    modules = modules_of(root)
    by_target = {name.replace("/", "_").lower(): name for name in modules}
    by_target.update({name.split("/")[0].lower() + "_" + name.split("/")[-1].lower(): name
                      for name in modules if name.startswith("Platform/")})
    problems, edges = [], {name: {} for name in modules}

    others = set(modules.values())
    for name, folder in modules.items():
        sources = [file for file in folder.rglob("*") if file.suffix in (".h", ".cpp")
                   and not any(parent in others for parent in file.parents if parent != folder)]
        is_core = not name.startswith(DESKTOP)
        for file in sources:
            where = file.relative_to(root)
            for kind, header in INCLUDE.findall(file.read_text()):
                if is_core and DESKTOP_HEADER.match(header):
                    problems.append(f"{where}: the core includes the desktop header {header}")
                if header.startswith("unicode/") and not is_inside(where, "Foundation/Text"):
                    problems.append(f"{where}: ICU is used behind Foundation/Text only, not by {name}")
                if header.startswith("openssl/") and not is_inside(where, "Foundation/Crypto"):
                    problems.append(f"{where}: OpenSSL is used behind Foundation/Crypto only, not by {name}")
                if header.startswith("nlohmann/") and file.suffix == ".h":
                    problems.append(f"{where}: JSON belongs into .cpp files")
                if kind == '"':
                    target = module_for(header, modules)
                    if target and target != name:
                        edges[name].setdefault(target, f"{where} includes {header}")

    for name, targets in edges.items():
        for target, reason in targets.items():
            if target.startswith(("Platform/Linux", "Platform/Qt")) and not name.startswith(
                    ("Shell", "Platform/Linux", "Platform/Qt")):
                problems.append(f"{reason}: only Shell knows the adapters")
            if target == "Platform/Fake":
                problems.append(f"{reason}: fakes are for the tests")

    problems += cycles_of(edges)

    reachable = {}

    def reach(name):
        if name not in reachable:
            reachable[name] = set()
            for dependency in declared_dependencies(modules[name]):
                target = by_target.get(dependency.lower())
                if target:
                    reachable[name] |= {target} | reach(target)
        return reachable[name]

    for name, targets in edges.items():
        for target, reason in targets.items():
            if target not in reach(name):
                problems.append(f"{reason}: but {name}/CMakeLists.txt does not depend on {target}")
    return problems


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
        "JSON belongs": {"MRMPrototype/Audio/Json.h": "#include <nlohmann/json.hpp>\n"},
        "form a cycle": {"MRMPrototype/Foundation/Bad.h": '#include "Audio/Level.h"\n'},
        "does not depend on": {"MRMPrototype/Audio/Bad.h": '#include "Shell/AppDelegate.h"\n'},
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
else:
    found = problems_of(pathlib.Path(sys.argv[1]))
    print("\n".join(found) or "the layers hold")
    sys.exit(1 if found else 0)
