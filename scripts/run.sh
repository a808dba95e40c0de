#!/usr/bin/env bash
# The run command: installs what is missing, builds the host program and the module, and runs
# the host with the module loaded and the sample library drawing open and registered in the
# main management window, so VNK shows it. The drawing is a copy in the user's data folder:
# the program writes its tree cache beside it and never into the checkout. With a display the
# window opens; without one the same host runs headless on a short demo script.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default --target vantor-cad vantor_module vantor

host=build/default/apps/vantor-cad/vantor-cad
module_dir=build/default/vantor/host
args=(--load "$module_dir/libvantor.so")
samples="${XDG_DATA_HOME:-$HOME/.local/share}/vantor/samples"
mkdir -p "$samples"
for drawing in data/samples/*.dxf; do
  [ -e "$drawing" ] || continue
  copy="$samples/$(basename "$drawing")"
  [ -e "$copy" ] || cp "$drawing" "$copy"
  # Registered once; later runs find it listed and leave the list as the user left it.
  if ! VANTOR_MODULE_DIR="$module_dir" build/default/apps/vantor/vantor list 0 | grep -qF "$copy"; then
    VANTOR_MODULE_DIR="$module_dir" build/default/apps/vantor/vantor register 0 "$copy" >/dev/null
  fi
  args+=(--open "$copy")
done
if [ -n "${DISPLAY:-}" ]; then
  exec "$host" "${args[@]}" "$@"
fi
exec "$host" --headless --script data/demo.script "${args[@]}" "$@"
