// Databases made by Access, repaired and read before and after by two readers that are not ours: the same
// tables, columns and rows. And with the map of free pages and every index page wiped, which costs nothing.
//
//   node repair.mjs JETCHECK-COMMAND... -- DATABASES READERS
//
// DATABASES is the folder of the databases unless ZIMBRAT_FIXTURES names one, READERS the folder under which npm
// put mdb-reader. Exit status 0 everything agrees, 1 differences (each on a line), 77 a reader or the databases
// are missing.
import { spawnSync } from "node:child_process";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";

import { requireJudges } from "./judges.mjs";

const split = process.argv.indexOf("--");
const jetcheck = process.argv.slice(2, split);
const [given, readers] = process.argv.slice(split + 1);
const databases = process.env.ZIMBRAT_FIXTURES ?? given;

const MDBReader = await requireJudges(readers, databases);

let differences = 0;
function same(what, found, expected) {
  if (found === expected) return;
  differences += 1;
  console.log(`${what}\n  found    ${found.slice(0, 2000)}\n  expected ${expected.slice(0, 2000)}`);
}

function run(command, ...args) {
  const result = spawnSync(command, args, { encoding: "utf8", maxBuffer: 1 << 26 });
  if (result.status !== 0) throw new Error(`${command} ${args.join(" ")}: ${result.stdout}${result.stderr}`);
  return result.stdout;
}

// Moved rows come at the end in one reader and in their place in another: rows are sorted.
const sorted = (rows) => rows.map((row) => JSON.stringify(row)).sort();

function byMdbReader(file) {
  const reader = new MDBReader(fs.readFileSync(file));
  return JSON.stringify(reader.getTableNames().sort().map((name) => {
    const table = reader.getTable(name);
    const columns = table.getColumns().map(({ name, type, size, nullable, autoLong }) =>
      ({ name, type, size, nullable, autoLong }));
    return { name, columns, rows: sorted(table.getData()) };
  }), (key, value) => (typeof value === "bigint" ? String(value) : value));
}

function byMdbTools(file) {
  return JSON.stringify(run("mdb-tables", "-1", file).split("\n").filter(Boolean).sort().map((name) => ({
    name,
    properties: run("mdb-prop", file, name).split("\n").sort(),
    rows: run("mdb-export", "-b", "hex", "-R", "\u0001", file, name).split("\u0001").sort(),
  })).concat(run("mdb-queries", "-L", file).split("\n").sort()));
}

function wipePages(file) {
  const bytes = fs.readFileSync(file);
  for (let page = 1; page < bytes.length / 4096; ++page) {
    const isIndex = [3, 4].includes(bytes[page * 4096]) && bytes[page * 4096 + 1] === 1;
    if (page === 1 || isIndex) bytes.fill(0, page * 4096, (page + 1) * 4096);
  }
  fs.writeFileSync(file, bytes);
}

const folder = fs.mkdtempSync(path.join(os.tmpdir(), "zimbrat-repair-"));
for (const name of fs.readdirSync(databases).filter((name) => name.endsWith(".mdb") && !name.includes("refuse"))) {
  const file = path.join(folder, name);
  for (const isWiped of [false, true]) {
    if (isWiped && name.startsWith("encoded")) continue;
    fs.rmSync(file, { force: true });
    fs.writeFileSync(file, fs.readFileSync(path.join(databases, name)));
    const before = [byMdbReader(file), byMdbTools(file)];
    if (isWiped) wipePages(file);
    run(...jetcheck, "--repair", file);
    const what = name + (isWiped ? ", wiped" : "");
    same(`${what}, mdb-reader`, byMdbReader(file), before[0]);
    same(`${what}, mdbtools`, byMdbTools(file), before[1]);
  }
}
fs.rmSync(folder, { recursive: true });
console.log(differences === 0 ? "everything agrees" : `${differences} differences`);
process.exit(differences === 0 ? 0 : 1);
