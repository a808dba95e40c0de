#!/usr/bin/env bash
# Whole-drawing DXF reading and writing, the engine against ezdxf, on the same generated
# R2000 drawing (~36 MB: 200,000 lines, 20,000 part records): builds the benchmark in Release
# in build/bench, runs it, times ezdxf reading and writing the file with /usr/bin/python3, and
# prints the figures side by side with their ratio and the targets.
set -euo pipefail
cd "$(dirname "$0")/.."
build=build/bench

cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release -DVANTOR_BUILD_BENCH=ON \
  -DVANTOR_BUILD_TESTS=OFF >/dev/null
cmake --build "$build" --target dxf_database_bench -j2 >/dev/null

results="$build/dxf_database_bench.json"
echo "Running the engine's benchmark (three repetitions, medians)..."
"$build/bench/dxf_database_bench" --benchmark_repetitions=3 \
  --benchmark_report_aggregates_only=true --benchmark_out="$results" \
  --benchmark_out_format=json >/dev/null
drawing="$build/bench/dxf_database_bench_drawing_v1.dxf"

if ! /usr/bin/python3 -c 'import ezdxf' 2>/dev/null; then
  echo "ezdxf is not installed (Debian package python3-ezdxf): only the engine's figures."
fi

echo "Timing ezdxf on the same file..."
/usr/bin/python3 - "$drawing" "$results" "$build/ezdxf_saved.dxf" <<'PYTHON'
import gc, json, os, resource, sys, time

drawing, results, saved = sys.argv[1:4]
size = os.path.getsize(drawing)
MB = 1e6


def peak_bytes():
    return resource.getrusage(resource.RUSAGE_SELF).ru_maxrss * 1024


def reset_peak():
    # The kernel's high-water mark starts again from what is in use now.
    with open('/proc/self/clear_refs', 'w') as f:
        f.write('5')
    return peak_bytes()


ours = {}
for bench in json.load(open(results))['benchmarks']:
    if bench.get('aggregate_name') == 'median':
        name = bench['run_name'].split('/')[0]
        ours[name] = (bench['bytes_per_second'] / MB, bench['peak_x_file'],
                      bench.get('kept_x_file', 0))

theirs = {}
try:
    import ezdxf
    gc.collect()
    base = reset_peak()
    start = time.perf_counter()
    doc = ezdxf.readfile(drawing)
    seconds = time.perf_counter() - start
    theirs['read'] = (size / MB / seconds, (peak_bytes() - base) / size)
    gc.collect()
    base = reset_peak()
    start = time.perf_counter()
    doc.saveas(saved)
    seconds = time.perf_counter() - start
    written = os.path.getsize(saved)
    theirs['write'] = (written / MB / seconds, (peak_bytes() - base) / written)
    os.remove(saved)
    version = ezdxf.__version__
except ImportError:
    version = None

print()
print(f'Drawing: {drawing} ({size / MB:.1f} MB)')
if version:
    print(f'ezdxf {version}, Python {sys.version.split()[0]}')
print()
print(f'{"":34}{"engine":>12}{"ezdxf":>12}{"ratio":>10}')
rows = [('read (readDwgFile)', 'BM_ReadDwgFile', 'read'),
        ('read (readDxfBytes)', 'BM_ReadDxfBytes', 'read'),
        ('write (saveAs)', 'BM_SaveAs', 'write')]
for label, ours_name, theirs_name in rows:
    mine = ours.get(ours_name)
    other = theirs.get(theirs_name)
    if mine is None:
        continue
    for what, index, unit in (('MB/s', 0, ''), ('peak memory', 1, 'x')):
        a = mine[index]
        b = other[index] if other else None
        # A figure that rounds to nothing has no meaningful ratio.
        ratio = f'{a / b:.1f}x' if b is not None and b >= 0.05 else '-'
        b_text = f'{b:.1f}{unit}' if b is not None else '-'
        print(f'{label + " " + what:34}{a:>11.1f}{unit or " "}{b_text:>12}{ratio:>10}')
print()
print('Peak memory is what the operation adds at its peak, in multiples of the file size.')
kept = ours.get('BM_ReadDwgFile', (0, 0, 0))[2]
print(f'The database a read leaves holds {kept:.1f}x the file size.')
read_speed = ours['BM_ReadDwgFile'][0]
write_speed = ours['BM_SaveAs'][0]
read_peak = ours['BM_ReadDwgFile'][1]
for text, met in ((f'reading >= 150 MB/s ({read_speed:.0f})', read_speed >= 150),
                  (f'writing >= 150 MB/s ({write_speed:.0f})', write_speed >= 150),
                  (f'peak memory when reading <= 3x the file ({read_peak:.1f}x)', read_peak <= 3)):
    print(f'target {text}: {"met" if met else "MISSED"}')
PYTHON
