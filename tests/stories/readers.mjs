// A new database for each choice of example programs, read back by two readers that are not ours and
// compared with the structure files and the rows that every database begins with.
//
//   node readers.mjs ZIMBRATC-COMMAND... -- STRUCTURES READERS
//
// STRUCTURES is the folder of the *.stb files, READERS the folder under which npm put mdb-reader. Exit status
// 0 everything agrees, 1 differences (each on a line), 77 a reader is missing.
import fs from "node:fs";
import path from "node:path";

import { requireJudges } from "./judges.mjs";
import { run, same, tell, wordGroups } from "./story.mjs";
import { checkStructure, expectedOf } from "./structures.mjs";

const [zimbratc, [structures, readers]] = wordGroups();
const MDBReader = await requireJudges(readers);

function checkRows(reader, expected, periods) {
  const rows = (name) => reader.getTable(name).getData();
  same("dboso", rows("dboso").map((r) => [r.Indoso, r.Imie, r.Nazwisko, r.Aktywny, r.Admin]),
       [["AD", "Administrator", "KLX", true, true]]);
  same("dbfir", rows("dbfir").map((r) => [r.Nazwa, r.Naglowek1, r.Naglowek2, r.Naglowek3]),
       [[null, "Nazwa firmy", "Adres firmy",
         "Dane kontaktowe (menu Baza / Dane Firmy / Nagłówek, logo)"]]);
  same("dboko", rows("dboko").map((r) => [r.Miesiac, r.Rok, r.Nazwa]), periods);
  for (const name of expected.tables.keys()) {
    if (!name.startsWith("db")) same(`rows of ${name}`, rows(name).length, 0);
  }
}

await tell("readers", (folder) => {
  const choices = [["faktury.stb", "magazyn.stb"], ["kadry.stb"],
                   ["magazyn.stb", "kadry.stb", "faktury.stb"]];
  for (const [number, names] of choices.entries()) {
    const name = `Spółka Żółw ${number}`;
    const files = names.map((file) => path.join(structures, file));
    run(zimbratc, ["nowa", "--folder", folder, "--nazwa", name, "--struktury", files.join(","),
                   "--od", "11/2024", "--do", "2/2025"]);
    const database = path.join(folder, `${name}.mdb`);
    const expected = expectedOf(files);
    const reader = new MDBReader(fs.readFileSync(database));
    checkStructure(reader, database, expected);
    checkRows(reader, expected, [[11, 2024, "Listopad"], [12, 2024, "Grudzień"],
                                 [1, 2025, "Styczeń"], [2, 2025, "Luty"]]);
    console.log(`${names.join(", ")}: ${expected.tables.size} tables, ` +
                `${expected.relations.length} relationships`);
  }
});
