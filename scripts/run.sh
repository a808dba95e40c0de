#!/usr/bin/env bash
# The run command: installs what is missing, builds, and runs the main job.
set -euo pipefail
cd "$(dirname "$0")/.."

scripts/install-deps.sh
cmake --preset default >/dev/null
cmake --build --preset default
exec build/default/apps/vantor-sysinfo "$@"
