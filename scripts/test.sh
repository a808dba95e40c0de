#!/usr/bin/env bash
# The test command: installs what is missing, configures, builds and runs every test through
# CTest. Exits non-zero on any failure. Pass "asan" to run the suite under the sanitizers.
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-default}"

scripts/install-deps.sh
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"
ctest --preset "$preset"
