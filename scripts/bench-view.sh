#!/usr/bin/env bash
# The drawing view's figures on the generated 36 MB drawing of 200,000 lines (the one the
# reading benchmark writes): the view benchmark (Google Benchmark, offscreen 1920x1080), then
# `cadtool render` of the drawing to PNG as a whole process against LibreCAD's dxf2pdf of the
# same file, with peak memory, side by side with the targets.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/bench

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVANTOR_BUILD_BENCH=ON \
  -DVANTOR_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --target drawing_view_bench dxf_database_bench cadtool -j2 >/dev/null

drawing="$build/bench/dxf_database_bench_drawing_v1.dxf"
if [ ! -e "$drawing" ]; then
  echo "Writing the bench drawing..."
  "$build/bench/dxf_database_bench" --benchmark_filter=BM_SaveAs --benchmark_min_time=0.01 >/dev/null
fi

echo "Running the view benchmark (three repetitions, medians)..."
"$build/bench/drawing_view_bench" --benchmark_repetitions=3 --benchmark_report_aggregates_only=true \
  --benchmark_out="$build/drawing_view_bench.json" --benchmark_out_format=json >/dev/null

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# Seconds and peak resident kilobytes of one run of a command.
measure() {
  /usr/bin/time -f '%e %M' -o "$work/time" "$@" >/dev/null 2>&1 || true
  cat "$work/time"
}
echo "Timing cadtool render and LibreCAD dxf2pdf on the same file..."
read -r ours_s ours_kb < <(measure "$build/apps/cadtool/cadtool" render "$drawing" "$work/ours.png")
cp "$drawing" "$work/drawing.dxf"
theirs_s=-
if [ -x /usr/bin/librecad ]; then
  read -r theirs_s _ < <(cd "$work" && QT_QPA_PLATFORM=offscreen measure /usr/bin/librecad dxf2pdf drawing.dxf)
fi
size=$(stat -c %s "$drawing")

/usr/bin/python3 - "$build/drawing_view_bench.json" "$ours_s" "$ours_kb" "$theirs_s" "$size" <<'PYTHON'
import json, sys
results, ours_s, ours_kb, theirs_s, size = sys.argv[1:6]
medians = {b['run_name']: b for b in json.load(open(results))['benchmarks'] if b.get('aggregate_name') == 'median'}
def ms(name):
    b = medians[name]
    scale = {'ms': 1.0, 'us': 1e-3, 'ns': 1e-6}[b['time_unit']]
    return b['real_time'] * scale
rows = [('opening the view (index, first picture)', 'BM_OpenView', 250.0),
        ('full redraw at the extents', 'BM_RedrawAtExtents', 40.0),
        ('full redraw at 20x zoom', 'BM_RedrawZoomed20x', 5.0),
        ('pan frame', 'BM_PanFrame', 4.0),
        ('drag-preview frame, 5,000-entity part', 'BM_DragPreviewFrame', 8.0),
        ('entity and snap under the cursor', 'BM_PickAndSnap', 1.0)]
print()
print(f'{"":44}{"ms":>10}{"target":>10}')
for label, name, target in rows:
    value = ms(name)
    print(f'{label:44}{value:>10.2f}{target:>10.1f}  {"met" if value <= target else "MISSED"}')
ours_s = float(ours_s)
peak = int(ours_kb) * 1024 / int(size)
print()
print(f'cadtool render to PNG, whole process: {ours_s:.2f} s, peak memory {peak:.1f}x the file')
if theirs_s != '-':
    theirs_s = float(theirs_s)
    print(f'LibreCAD dxf2pdf of the same file:    {theirs_s:.2f} s')
    print(f'target at least 1.5x faster: {theirs_s / ours_s:.1f}x  {"met" if theirs_s / ours_s >= 1.5 else "MISSED"}')
print(f'target peak memory <= 3x the file: {"met" if peak <= 3 else "MISSED"}')
PYTHON
