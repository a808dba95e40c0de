#!/usr/bin/env bash
# Installs the Debian 12 packages the build, the tests and the host need. Does nothing when
# they are all there already, so the README commands stay fast on a second run.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  libgtest-dev libgmock-dev libbenchmark-dev
  clang libclang-rt-dev
  python3 python3-ezdxf librecad
  qt6-base-dev qt6-svg-dev zlib1g-dev fonts-nanum python3-matplotlib
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed'; then
    missing+=("$p")
  fi
done
# The independent DWG reader the tests compare with (LibreDWG's WebAssembly build, run by
# Node): test-only, kept under build/node. Offline, its tests say they skipped.
root="$(cd "$(dirname "$0")/.." && pwd)"
if command -v npm >/dev/null && [ ! -d "$root/build/node/node_modules/@mlightcad/libredwg-web" ]; then
  timeout 300 npm install --prefix "$root/build/node" --no-audit --no-fund \
    @mlightcad/libredwg-web >/dev/null 2>&1 ||
    echo "install-deps: LibreDWG for Node not installed (offline?); its tests will skip"
fi

[ ${#missing[@]} -eq 0 ] && exit 0

sudo_cmd=()
[ "$(id -u)" -ne 0 ] && sudo_cmd=(sudo)
echo "Installing: ${missing[*]}"
"${sudo_cmd[@]}" apt-get update -qq
DEBIAN_FRONTEND=noninteractive "${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}"
