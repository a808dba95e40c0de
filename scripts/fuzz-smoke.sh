#!/usr/bin/env bash
# Builds the fuzz targets (preset "fuzz", clang) and runs them over copies of their kept
# corpora. Fails when a target crashes, hangs or runs out of memory; the input that did it is
# kept in build/fuzz/artifacts/ to become a regression test.
#
# Usage: scripts/fuzz-smoke.sh [seconds in all, default 30]
#          one target after the other, the time shared among them (CI's short run)
#        scripts/fuzz-smoke.sh --long SECONDS [--corpus DIR]
#          every target at once, each for SECONDS, a crash kept and counted without ending the
#          target's run, starting from the seeds (fuzz/corpus) and the kept corpus (DIR/<target>,
#          default build/fuzz/corpus); afterwards the kept corpus is made again from both runs'
#          inputs, minimised (the fewest inputs that reach everything reached), and a line per
#          target gives executions, rate, coverage and the faults found (their inputs in
#          build/fuzz/artifacts/). The kept corpus stays out of the repository: campaigns
#          grow it to megabytes, the seeds stay small for CI's short run.
set -euo pipefail
cd "$(dirname "$0")/.."

long=0
kept_root="build/fuzz/corpus"
total_seconds=30
while [[ $# -gt 0 ]]; do
  case "$1" in
    --long) long=1; total_seconds="$2"; shift 2 ;;
    --corpus) kept_root="$2"; shift 2 ;;
    *) total_seconds="$1"; shift ;;
  esac
done

cmake --preset fuzz >/dev/null
nice -n 10 cmake --build --preset fuzz --target fuzz_targets

mapfile -t fuzzers < <(find build/fuzz/fuzz -maxdepth 1 -type f -name '*_fuzz' -perm -u+x | sort)
if [[ ${#fuzzers[@]} -eq 0 ]]; then
  echo "fuzz-smoke: no fuzz targets were built" >&2
  exit 1
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
artifacts="build/fuzz/artifacts"
mkdir -p "$artifacts"

# The seeds of a target: its kept corpus, and for the database target the reader's too (both
# read drawings).
seed_folders() {
  local name="$1"
  echo "$kept_root/$name"
  if [[ "$kept_root" != fuzz/corpus ]]; then echo "fuzz/corpus/$name"; fi
  if [[ "$name" == dxf_database ]]; then echo "fuzz/corpus/dxf_reader"; fi
}

# Inputs longer than this make a target slow without reaching more code: drawings need room
# for a few tables, the record and text files far less.
max_len() {
  case "$1" in
    dxf_*) echo 32768 ;;
    *) echo 4096 ;;
  esac
}

run_one() {
  local fuzzer="$1" seconds="$2" log="$3"
  shift 3
  local name
  name="$(basename "$fuzzer" _fuzz)"
  # A copy, so what the fuzzer adds never lands in the kept corpus unmerged.
  local corpus="$work/$name"
  mkdir -p "$corpus"
  local folder
  while read -r folder; do
    if [[ -d "$folder" ]]; then cp -R "$folder/." "$corpus/"; fi
  done < <(seed_folders "$name")
  local args=(-max_total_time="$seconds" -timeout=10 -rss_limit_mb=2048 -max_len="$(max_len "$name")"
              -artifact_prefix="$artifacts/$name-" -print_final_stats=1)
  if [[ -f "fuzz/$name.dict" ]]; then args+=(-dict="fuzz/$name.dict"); fi
  "$fuzzer" "${args[@]}" "$@" "$corpus" >"$log" 2>&1
}

status=0
if [[ $long -eq 0 ]]; then
  seconds=$(( total_seconds / ${#fuzzers[@]} ))
  (( seconds < 1 )) && seconds=1
  for fuzzer in "${fuzzers[@]}"; do
    name="$(basename "$fuzzer" _fuzz)"
    echo "fuzz-smoke: $name for ${seconds}s"
    if ! run_one "$fuzzer" "$seconds" "$work/$name.log"; then
      tail -n 40 "$work/$name.log" >&2
      echo "fuzz-smoke: $name failed; the input is in $artifacts/" >&2
      status=1
    fi
  done
  exit "$status"
fi

echo "fuzz-smoke: ${#fuzzers[@]} targets at once for ${total_seconds}s each"
declare -A pids
logs="build/fuzz/logs"
mkdir -p "$logs"
for fuzzer in "${fuzzers[@]}"; do
  name="$(basename "$fuzzer" _fuzz)"
  # In a forked child, so a crash is kept and counted and the campaign goes on.
  run_one "$fuzzer" "$total_seconds" "$logs/$name.log" -fork=1 -ignore_crashes=1 \
    -ignore_timeouts=1 -ignore_ooms=1 &
  pids[$name]=$!
done

kept_counts=()
printf '%-14s %12s %9s %8s %8s  %s\n' target executions "exec/s" cov ft "oom/timeout/crash"
for fuzzer in "${fuzzers[@]}"; do
  name="$(basename "$fuzzer" _fuzz)"
  wait "${pids[$name]}" || true
  log="$logs/$name.log"
  # The parent's last progress line: "#<runs>: cov: .. ft: .. corp: .. exec/s ..
  # oom/timeout/crash: a/b/c time: ..".
  last="$(grep -E '^#[0-9]+: cov:' "$log" | tail -n 1 || true)"
  field() { grep -oE "$1:? [0-9/]+" <<<"$last" | awk '{print $2}' || true; }
  runs="$(sed -nE 's/^#([0-9]+):.*/\1/p' <<<"$last")"
  rate="$(field exec/s)"
  cov="$(field cov)"
  ft="$(field ft)"
  faults="$(field oom/timeout/crash)"
  if [[ -n "$faults" && "$faults" != 0/0/0 ]]; then status=1; fi
  printf '%-14s %12s %9s %8s %8s  %s\n' "$name" "${runs:-?}" "${rate:-?}" "${cov:-?}" "${ft:-?}" "${faults:-?}"
  # The work corpus holds the kept one and the seeds too, so merging it alone into an empty
  # folder keeps every input that reaches something no smaller one does.
  minimised="$work/$name.minimised"
  mkdir -p "$minimised" "$kept_root"
  if "$fuzzer" -merge=1 -timeout=10 -rss_limit_mb=2048 -max_len="$(max_len "$name")" \
      "$minimised" "$work/$name" >"$logs/$name.merge.log" 2>&1; then
    rm -rf "${kept_root:?}/$name"
    mv "$minimised" "$kept_root/$name"
    kept_counts+=("$name $(find "$kept_root/$name" -type f | wc -l)")
  else
    echo "fuzz-smoke: merging $name failed, see $logs/$name.merge.log" >&2
  fi
done
echo "fuzz-smoke: inputs kept in $kept_root: ${kept_counts[*]}"
exit "$status"
