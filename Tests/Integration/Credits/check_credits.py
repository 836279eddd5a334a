#!/usr/bin/env python3
"""usage: check_credits.py CREDITS BUILD MANIFEST_SOURCES LIST_OF_MODELS
Every library that a program of the build asks the loader for, and every file of the download manifest, has an entry in
the credits; and an entry's package says which license it is."""
import json, pathlib, re, subprocess, sys

credits = json.loads(pathlib.Path(sys.argv[1]).read_text())
build, manifest, catalog = (pathlib.Path(argument) for argument in sys.argv[2:5])
credited = {library for entry in credits for library in entry.get("libraries", [])}
prefixes = tuple(prefix for entry in credits for prefix in entry.get("models", []))
shipped = [f for folder in ("bin", "lib/murmel") for f in (build / folder).rglob("*") if f.is_file()]
own = {f.name for f in shipped}
problems = [f"{entry['name']}: no license" for entry in credits if not entry["license"]]
programs = 0
for file in shipped:
    if file.read_bytes()[:4] != b"\x7fELF": continue
    programs += 1
    dynamic = subprocess.run(["readelf", "-d", file], capture_output=True, text=True, check=True).stdout
    for name in re.findall(r"\(NEEDED\).*\[(.*)\]", dynamic):
        if name not in own and re.sub(r"\.so\..*", ".so", name) not in credited:
            problems.append(f"{file.name} needs {name}, which the credits do not name")
text = "".join(f.read_text() for f in manifest.glob("*.cpp")) + "".join(f.read_text() for f in manifest.glob("*.h"))
identifiers = set(re.findall(r'"((?:parakeet|whisper|gemma|qwen|sage)[\w-]*:)', text))
problems += [f"the credits name no model for {i}" for i in identifiers if not i.startswith(prefixes)]
# The list of models says which license each has; the credits say the same, with the text.
models = re.findall(r'\{"((?:parakeet|whisper|gemma|qwen|sage)[\w-]*:).*?"((?:MIT|CC|Apache)[\w.-]*)"', catalog.read_text(), re.S)
for identifier, license in models:
    problems += [f"{identifier} has {license} in the list of models, {entry['license']} in the credits" for entry in credits
                 if identifier.startswith(tuple(entry.get("models", [])) or " ") and entry["license"] != license]
problems += [f"no text of {entry['license']} for {entry['name']}" for entry in credits
             if not entry["packages"] and not (build / f"lib/murmel/licenses/{entry['license']}.txt").exists()]
if not programs or not identifiers or len(models) < 8: problems.append("nothing to compare: is the build there?")
print("\n".join(problems) or f"{programs} programs and {len(identifiers)} families of models are credited")
sys.exit(bool(problems))
