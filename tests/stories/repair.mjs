// Databases made by Access, repaired and read before and after by two readers that are not ours: the same
// tables, columns and rows. And with the map of free pages and every index page wiped, which costs nothing.
//
//   node repair.mjs JETCHECK-COMMAND... -- DATABASES READERS
//
// DATABASES is the folder of the databases unless ZIMBRAT_FIXTURES names one, READERS the folder under which npm
// put mdb-reader. Exit status 0 everything agrees, 1 differences (each on a line), 77 a reader or the databases
// are missing.
import fs from "node:fs";
import path from "node:path";

import { requireJudges } from "./judges.mjs";
import { run, same, tell, wordGroups } from "./story.mjs";

const [jetcheck, [given, readers]] = wordGroups();
const databases = process.env.ZIMBRAT_FIXTURES ?? given;

const MDBReader = await requireJudges(readers, databases);

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
  return JSON.stringify(run("mdb-tables", ["-1", file]).split("\n").filter(Boolean).sort().map((name) => ({
    name,
    properties: run("mdb-prop", [file, name]).split("\n").sort(),
    rows: run("mdb-export", ["-b", "hex", "-R", "\u0001", file, name]).split("\u0001").sort(),
  })).concat(run("mdb-queries", ["-L", file]).split("\n").sort()));
}

function wipePages(file) {
  const bytes = fs.readFileSync(file);
  for (let page = 1; page < bytes.length / 4096; ++page) {
    const isIndex = [3, 4].includes(bytes[page * 4096]) && bytes[page * 4096 + 1] === 1;
    if (page === 1 || isIndex) bytes.fill(0, page * 4096, (page + 1) * 4096);
  }
  fs.writeFileSync(file, bytes);
}

await tell("repair", (folder) => {
  for (const name of fs.readdirSync(databases).filter((name) => name.endsWith(".mdb") && !name.includes("refuse"))) {
    const file = path.join(folder, name);
    for (const isWiped of [false, true]) {
      if (isWiped && name.startsWith("encoded")) continue;
      fs.rmSync(file, { force: true });
      fs.writeFileSync(file, fs.readFileSync(path.join(databases, name)));
      const before = [byMdbReader(file), byMdbTools(file)];
      if (isWiped) wipePages(file);
      run(jetcheck, ["--repair", file]);
      const what = name + (isWiped ? ", wiped" : "");
      same(`${what}, mdb-reader`, byMdbReader(file), before[0]);
      same(`${what}, mdbtools`, byMdbTools(file), before[1]);
    }
  }
});
