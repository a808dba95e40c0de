#!/usr/bin/env bash
# Builds the fuzz targets (preset "fuzz", clang) and runs each one for a short time over a
# copy of its seed corpus. Fails when a target crashes, hangs or runs out of memory; the input
# that did it is kept in build/fuzz/artifacts/ to become a regression test.
# Usage: scripts/fuzz-smoke.sh [seconds in all, default 30]
set -euo pipefail
cd "$(dirname "$0")/.."
total_seconds="${1:-30}"

cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target fuzz_targets

mapfile -t fuzzers < <(find build/fuzz/fuzz -maxdepth 1 -type f -name '*_fuzz' -perm -u+x | sort)
if [[ ${#fuzzers[@]} -eq 0 ]]; then
  echo "fuzz-smoke: no fuzz targets were built" >&2
  exit 1
fi
seconds=$(( total_seconds / ${#fuzzers[@]} ))
(( seconds < 1 )) && seconds=1

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
artifacts="build/fuzz/artifacts"
mkdir -p "$artifacts"

status=0
for fuzzer in "${fuzzers[@]}"; do
  name="$(basename "$fuzzer" _fuzz)"
  # A copy, so what the fuzzer adds never lands in the source tree.
  corpus="$work/$name"
  mkdir -p "$corpus"
  if [[ -d "fuzz/corpus/$name" ]]; then cp -R "fuzz/corpus/$name/." "$corpus/"; fi
  args=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048
        -artifact_prefix="$artifacts/$name-" -print_final_stats=1)
  if [[ -f "fuzz/$name.dict" ]]; then args+=(-dict="fuzz/$name.dict"); fi
  echo "fuzz-smoke: $name for ${seconds}s"
  if ! "$fuzzer" "${args[@]}" "$corpus"; then
    echo "fuzz-smoke: $name failed; the input is in $artifacts/" >&2
    status=1
  fi
done
exit "$status"
