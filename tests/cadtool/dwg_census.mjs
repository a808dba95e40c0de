// Counts the objects of a DWG file by DXF name with LibreDWG's WebAssembly build, the reader
// our DWG counts are compared with. Prints one JSON object: {"total": n, "types": {...}}.
// Usage: node dwg_census.mjs MODULE_DIR FILE.dwg
import { readFileSync } from 'node:fs';
import { pathToFileURL } from 'node:url';
import path from 'node:path';

const [moduleDir, file] = process.argv.slice(2);
const wasmDir = path.join(moduleDir, 'node_modules/@mlightcad/libredwg-web/wasm/');
const { default: createModule } = await import(pathToFileURL(path.join(wasmDir, 'libredwg-web.js')).href);
const lib = await createModule({ locateFile: (name) => path.join(wasmDir, name) });
lib.FS.writeFile('in.dwg', new Uint8Array(readFileSync(file)));
const result = lib.dwg_read_file('in.dwg');
// Errors below "critical" (a wrong check value, an unhandled class) still leave a drawing.
if (!result.data) {
  console.log(JSON.stringify({ error: result.error }));
  process.exit(2);
}
const count = lib.dwg_get_num_objects(result.data);
const types = {};
for (let i = 0; i < count; ++i) {
  const obj = lib.dwg_get_object(result.data, i);
  if (!obj) continue;
  const name = lib.dwg_object_get_dxfname(obj) || 'UNKNOWN';
  types[name] = (types[name] || 0) + 1;
}
console.log(JSON.stringify({ total: count, error: result.error, types }));
