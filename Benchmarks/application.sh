#!/usr/bin/env bash
# usage: application.sh [BUILD-FOLDER]
# Prints how soon the application's tray icon is there, and what it takes of memory and processor at rest, on a
# private desktop. The build folder is build/bench unless told; its targets murmel, mrm-fluidaudio-worker and
# application-figures must be built.
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$(realpath "${1:-$root/build/bench}")
in_session() {
  mkdir -p "$XDG_CONFIG_HOME/MRM"
  echo '{"onboarding.completed": true}' >"$XDG_CONFIG_HOME/MRM/defaults.json"
  exec "$build/benchmarks/application-figures" "$build/bin/murmel"
}
if [ -n "${MURMEL_SESSION_DIRECTORY:-}" ]; then in_session; fi
exec "$root/Tests/Support/private-session" --wm --pulse --keyring -- "$0" "$build"
