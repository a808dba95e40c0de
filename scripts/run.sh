#!/usr/bin/env bash
# The run command: installs what is missing, builds the host program and the module, and runs
# the host with the module loaded and the sample library drawing open. With a display the
# window opens; without one the same host runs headless on a short demo script.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target vantor-cad vantor_module

host=build/default/apps/vantor-cad/vantor-cad
args=(--load build/default/vantor/host/libvantor.so)
for drawing in data/samples/*.dxf; do
  [ -e "$drawing" ] && args+=(--open "$drawing")
done
if [ -n "${DISPLAY:-}" ]; then
  exec "$host" "${args[@]}" "$@"
fi
exec "$host" --headless --script data/demo.script "${args[@]}" "$@"
