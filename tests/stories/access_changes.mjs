// Databases that Access made, changed by jetsql and read before and after by two readers that are not ours: what
// was there is there, what was added is there too, and jetcheck finds nothing.
//
//   node access_changes.mjs JETSQL-COMMAND... -- JETCHECK-COMMAND... -- FIXTURES READERS
//
// FIXTURES is the folder of the databases, unless ZIMBRAT_FIXTURES names another, READERS the folder under which npm put mdb-reader. Exit status 0
// everything agrees, 1 differences (each on a line), 77 a reader or the fixtures are missing.
import fs from "node:fs";
import path from "node:path";

import { requireJudges } from "./judges.mjs";
import { run, same, tell, wordGroups } from "./story.mjs";

const [jetsql, jetcheck, [usualFixtures, readers]] = wordGroups();
const fixtures = process.env.ZIMBRAT_FIXTURES ?? usualFixtures;

const MDBReader = await requireJudges(readers, fixtures);

function readTables(database) {
  const reader = new MDBReader(fs.readFileSync(database));
  return new Map(reader.getTableNames().map((name) => [name, reader.getTable(name).getData()]));
}

// Rows in an order of their own: a row that outgrew its page is read in another place.
const sorted = (rows, columns) =>
  rows.map((row) => JSON.stringify(columns.map((column) => row[column] ?? null))).sort();

const note = "ż".repeat(3000);

function change(database, table) {
  run(jetsql, ["--haslo", "password", database,
      `ALTER TABLE [${table}] ADD COLUMN [Dodane pole] TEXT(40)`,
      `ALTER TABLE [${table}] ADD COLUMN [Dodana nota] MEMO`,
      `UPDATE [${table}] SET [Dodane pole] = 'Zażółć gęślą'`,
      `CREATE INDEX [Dodany indeks] ON [${table}] ([Dodane pole] DESC)`,
      `UPDATE [${table}] SET [Dodana nota] = String(3000, 'ż')`,
      `SELECT * INTO [Kopia ${table}] FROM [${table}]`,
      `CREATE TABLE [Nowa ${table}] (Id COUNTER CONSTRAINT Klucz PRIMARY KEY, Miasto TEXT(50) NOT NULL, Kwota CURRENCY)`,
      `INSERT INTO [Nowa ${table}] (Miasto, Kwota) VALUES ('Łódź', 12.5)`,
      `INSERT INTO [Nowa ${table}] (Miasto, Kwota) SELECT [Dodane pole], Count(*) FROM [${table}] GROUP BY [Dodane pole]`,
      `DELETE FROM [Nowa ${table}] WHERE Miasto Like 'ł*'`]);
}

function compare(database, name, before) {
  const after = readTables(database);
  for (const [table, rows] of before) {
    const columns = Object.keys(rows[0] ?? {});
    const where = `${name}, ${table}`;
    for (const found of [after.get(table), after.get(`Kopia ${table}`)]) {
      same(`${where}: rows`, sorted(found, columns), sorted(rows, columns));
      for (const row of found) same(`${where}: added`, [row["Dodane pole"], row["Dodana nota"]], ["Zażółć gęślą", note]);
    }
    same(`${where}: new table`, after.get(`Nowa ${table}`).map((row) => [row.Miasto, Number(row.Kwota)]),
         rows.length ? [["Zażółć gęślą", rows.length]] : []);
    same(`${where}: mdb-count`, Number(run("mdb-count", [database, table])), rows.length);
    same(`${where}: mdb-export`, run("mdb-export", [database, `Nowa ${table}`]).split("\n")[0], "Id,Miasto,Kwota");
  }
  run(jetcheck, [database]);
}

await tell("access", (folder) => {
  const files = fs.readdirSync(fixtures).filter((file) => /\.mdb$/.test(file) && !/refuse/.test(file)).sort();
  for (const file of files) {
    const database = path.join(folder, file);
    fs.copyFileSync(path.join(fixtures, file), database);
    fs.chmodSync(database, 0o600);
    const before = readTables(database);
    for (const table of before.keys()) change(database, table);
    compare(database, file, before);
    console.log(`${file}: ${before.size} tables`);
  }
});
