#!/usr/bin/env node
// HyperFormula on the graph benchmarks' 100,000-formula sheet, beside our own
// figures from the same run: buildFromArray against parsing, building the
// graph and evaluating every formula once; setCellContents of A1 against the
// order of A1's dependents plus their evaluation by compiled programs.
//
// Usage: node bench/hyperformula_sheet.js BUILD_DIR
// BUILD_DIR is a build with -DCELLFORMULA_BUILD_BENCHMARKS=ON. HyperFormula is
// installed into a scratch folder by npm the first time; it is never a
// dependency of the library.
'use strict';

const { execFileSync } = require('child_process');
const fs = require('fs');
const os = require('os');
const path = require('path');

const buildDir = process.argv[2];
if (!buildDir) {
  console.error('usage: node bench/hyperformula_sheet.js BUILD_DIR');
  process.exit(2);
}
const scratch = path.join(os.tmpdir(), 'cellformula-hyperformula');
if (!fs.existsSync(path.join(scratch, 'node_modules', 'hyperformula'))) {
  fs.mkdirSync(scratch, { recursive: true });
  execFileSync('npm', ['install', '--prefix', scratch, '--no-save', '--no-audit', '--no-fund', 'hyperformula@2'],
               { stdio: 'inherit' });
}
const { HyperFormula } = require(path.join(scratch, 'node_modules', 'hyperformula'));

// The same cells: numbers stay numbers, and function arguments are separated
// by "," as HyperFormula writes them.
const csv = execFileSync(path.join(buildDir, 'bench', 'cellformula_bench_sheet'), { maxBuffer: 1 << 28 }).toString();
const data = csv.trimEnd().split('\n').map((line) => line.split(',').map((field) => {
  if (field === '') return null;
  if (field.startsWith('=')) return field.replace(/;/g, ',');
  return Number(field);
}));
const formulaCount = data.flat().filter((cell) => typeof cell === 'string').length;

function millis(start) { return Number(process.hrtime.bigint() - start) / 1e6; }

const runs = 3;
let build = Infinity;
let change = Infinity;
let changed = 0;
for (let run = 0; run < runs; ++run) {
  let start = process.hrtime.bigint();
  const hf = HyperFormula.buildFromArray(data, { licenseKey: 'gpl-v3' });
  build = Math.min(build, millis(start));
  start = process.hrtime.bigint();
  const changes = hf.setCellContents({ sheet: 0, col: 0, row: 0 }, [[2 + run]]);
  change = Math.min(change, millis(start));
  changed = changes.length;
  hf.destroy();
}

const ours = JSON.parse(execFileSync(path.join(buildDir, 'bench', 'cellformula_bench'),
  ['--benchmark_filter=sheetFirstEvaluation|sheetRecalculationCompiled', '--benchmark_format=json'],
  { maxBuffer: 1 << 26 }).toString());
const oursMillis = (name) => {
  const found = ours.benchmarks.find((b) => b.name === name);
  const scale = { ns: 1e-6, us: 1e-3, ms: 1, s: 1e3 }[found.time_unit];
  return found.real_time * scale;
};
const first = oursMillis('sheetFirstEvaluation');
const recalc = oursMillis('sheetRecalculationCompiled');

console.log(`HyperFormula ${HyperFormula.version}, node ${process.version}, ${formulaCount} formulas, best of ${runs}`);
console.log(`buildFromArray                ${build.toFixed(1)} ms`);
console.log(`setCellContents(A1)           ${change.toFixed(2)} ms (${changed} changed cells)`);
console.log(`cellformula parse+graph+eval  ${first.toFixed(1)} ms  (${(build / first).toFixed(1)}x faster)`);
console.log(`cellformula order+eval of A1  ${recalc.toFixed(3)} ms  (${(change / recalc).toFixed(1)}x faster)`);
