// Reads a saved file with cbor-x, which makes typed arrays of RFC 8746's, and compares values, dimensions, text, what is missing.
import assert from 'node:assert/strict';
import { readFileSync } from 'node:fs';
import { createRequire } from 'node:module';

const [folder, path] = process.argv.slice(2);
const { Decoder, addExtension } = createRequire(folder + '/')('cbor-x');
for (const tag of [40, 1040, 41, 43001]) addExtension({ tag, decode: (value) => ({ tag, value }) });
const decoder = new Decoder({ mapsAsObjects: true, structuredClone: true });
const [name, version, variables, list] = decoder.decode(readFileSync(path));
assert.deepEqual([name, version], ['vexadata', 1]);
assert.deepEqual(list.map((entry) => entry[0]), Object.keys(variables));

const { matrix, rows, large, text, texts, complex, truth, number, records, sparse, empty } = variables;
assert.deepEqual(matrix, { tag: 1040, value: [[2, 3], new Float64Array([1, 2, 3, 4, 5, 6])] });
assert.deepEqual(rows, { tag: 40, value: [[2, 3], new Int32Array([1, 2, 3, 4, 5, 6])] });
assert.deepEqual(large, { tag: 1040, value: [[50, 40], Float32Array.from({ length: 2000 }, (_, k) => k + 1)] });
assert.deepEqual(truth.value, [[1, 2], { tag: 41, value: [true, false] }]);
assert.deepEqual(complex.value[1], { tag: 43001, value: new Float64Array([1, 2, 3, -4]) });
assert.equal(number, 2.5);
assert.equal(text, 'Gr\u00fc\u00dfe \u{1F600}');
assert.deepEqual(texts, { kind: 'string', size: [1, 3], values: ['a', null, '\u00e9'] });
assert.deepEqual(records.fields, ['name', 'size']);
assert.equal(records.values[2], 'Gr\u00f6\u00dfe');
assert.deepEqual(sparse.size, [1000, 2]);
assert.deepEqual(sparse.starts, new BigUint64Array([0n, 1n, 2n]));
assert.equal(empty, null);
