// All four tasks on the example programs, as docs/przyklad.md tells them: the commands are taken from the document
// and must print what it says. Between them the story fills in rows, raises a structure version, sets a password, and
// after each chapter two readers that are not ours must agree on the database and find what is due.
//
//   node four_tasks.mjs ZIMBRATC-COMMAND... -- JETSQL-COMMAND... -- JETCHECK-COMMAND... -- STRUCTURES READERS DOCUMENT
//
// Exit status 0 everything agrees, 1 differences (each on a line), 77 a reader is missing.
import fs from "node:fs";
import path from "node:path";

import { readByBoth } from "./agreement.mjs";
import { invoicing, newInvoicing, payroll } from "./company.mjs";
import { requireJudges } from "./judges.mjs";
import { setPassword } from "./password.mjs";
import { attempt, expect, run, same, tell, wordGroups } from "./story.mjs";
import { checkStructure, expectedOf } from "./structures.mjs";
import { readText, writeText } from "./windows1250.mjs";

const [zimbratc, jetsql, jetcheck, [structures, readers, document]] = wordGroups();
const programs = { zimbratc, jetsql, jetcheck };
const MDBReader = await requireJudges(readers);

// --- the document ---------------------------------------------------------------------------------

// Its chapters: commands (indented, behind "$ ") and what each prints.
function readChapters(text) {
  return text.split(/^## /m).slice(1).map((chapter) => {
    const commands = [];
    for (const [, line] of chapter.matchAll(/^ {4}(.*)$/gm)) {
      if (line.startsWith("$ ")) commands.push({ text: line.slice(2), output: "" });
      else commands.at(-1).output += `${line}\n`;
    }
    return commands;
  });
}

function carryOut(folder, { text, output }) {
  const words = text.match(/(?:[^\s"']+|"[^"]*"|'[^']*')+/g).map((word) => word.replace(/["']/g, ""));
  const env = { ...process.env };
  while (/^\w+=/.test(words[0])) {
    const [name, value] = words.shift().split("=");
    env[name] = value;
  }
  const result = attempt(programs[words[0]], words.slice(1), { cwd: folder, env });
  const onWindows = `Z:${folder.replaceAll("/", "\\")}`;
  const printed = result.stdout.replaceAll("\r\n", "\n").replaceAll(onWindows, "/dane").replaceAll(folder, "/dane");
  same(`${text}: prints`, printed, output);
  same(`${text}: errors`, [result.stderr, result.status], ["", 0]);
}

// --- what is due ----------------------------------------------------------------------------------

const isDocument = (name) => ["ZA", "FA", "UM", "SE", "KA", "PB", "BA"].includes(name.slice(0, 2));

// Every row of every table, as texts that do not depend on the order of fields and rows.
function rowsOf(reader) {
  const textOf = (row) => JSON.stringify(Object.entries(row).sort());
  return Object.fromEntries(reader.getTableNames().sort().map((name) =>
    [name, reader.getTable(name).getData().map(textOf).sort()]));
}

// The rows as they must be once the new version has renamed and its statements have run.
function upgraded(before) {
  const change = (name, how) => before[name].map((row) =>
    JSON.stringify(Object.entries(how(Object.fromEntries(JSON.parse(row)))).sort())).sort();
  const { KOAdresy, ...rest } = before;
  expect(KOAdresy.length === 300, "the old table has lost its rows");
  return {
    ...rest,
    KOPlacowki: change("KOAdresy", ({ Rodzaj, ...row }) =>
      ({ ...row, Przeznaczenie: Rodzaj, Region: row.Miejscowość === "Łódź" ? "łódzkie" : null })),
    FADokumenty: change("FADokumenty", (row) => ({ ...row, RokSprzedaży: Number(row.DataSprzedaży.slice(0, 4)) })),
    dbprg: change("dbprg", (row) => (row.Indprg === "FAK" ? { ...row, VerMinor: 5 } : row)),
  };
}

function checkTemplate(before, reader) {
  const after = rowsOf(reader);
  same("the new database's tables", Object.keys(after), Object.keys(before).sort());
  for (const [name, rows] of Object.entries(after)) {
    if (isDocument(name)) {
      expect(before[name].length > 0, `${name} was empty: nothing to see`);
      same(`documents left in ${name}`, rows, []);
    } else if (name !== "dboko" && name !== "dbfir") {
      same(`dictionary ${name}`, rows, before[name]);
    }
  }
  same("periods", reader.getTable("dboko").getData().map((row) => [row.Rok, row.Miesiac]),
       Array.from({ length: 12 }, (_, i) => [2026, i + 1]));
  same("company", reader.getTable("dbfir").getData().map((row) => [row.Nazwa, row.Naglowek1, row.Naglowek2]),
       [[null, "Nazwa firmy", "Adres firmy"]]);
  same("password", reader.getPassword(), null);
}

// --- the story ------------------------------------------------------------------------------------

await tell("four-tasks", (folder) => {
  const [files, work] = ["struktury", "temp"].map((name) => path.join(folder, name));
  fs.mkdirSync(files);
  fs.mkdirSync(work);
  process.env.TEMP = work;
  process.env.ZIMBRAT_REJESTR = path.join(work, "rejestr.reg");
  for (const name of ["faktury.stb", "kadry.stb"]) fs.copyFileSync(path.join(structures, name), path.join(files, name));
  const database = path.join(folder, "Firma.mdb");
  const chapters = readChapters(fs.readFileSync(document, "utf8"));

  // Runs the chapter's commands; afterwards the judges look at the database and at what lies beside it.
  function chapter(number, programFiles, name = "Firma.mdb") {
    const there = fs.readdirSync(folder);
    for (const command of chapters[number - 1]) carryOut(folder, command);
    const file = path.join(folder, name);
    const { reader, rows } = readByBoth(MDBReader, file);
    checkStructure(reader, file, expectedOf(programFiles.map((program) => path.join(files, program))));
    run(jetcheck, [file]);
    same(`chapter ${number}: left over`, [fs.readdirSync(folder), fs.readdirSync(work)],
         [[...new Set([...there, name])].sort(), []]);
    const count = [...rows.values()].reduce((sum, { length }) => sum + length, 0);
    console.log(`chapter ${number}: ${rows.size} tables, ${count} rows`);
    return rowsOf(reader);
  }

  // The chapter has nothing to do and leaves the file of the one before.
  function checkAgain(number) {
    const content = fs.readFileSync(database);
    chapter(number, ["faktury.stb", "kadry.stb"]);
    expect(fs.readFileSync(database).equals(content), `chapter ${number} changed the file`);
  }

  chapter(1, ["faktury.stb"]);
  run(jetsql, [database, ...invoicing]);
  const invoices = rowsOf(new MDBReader(fs.readFileSync(database)));
  const both = ["faktury.stb", "kadry.stb"];
  const extended = chapter(2, both);
  for (const [name, rows] of Object.entries(invoices)) {
    if (name !== "dbprg") same(`rows of ${name} after the second program`, extended[name], rows);
  }
  run(jetsql, [database, ...payroll]);
  const filled = rowsOf(new MDBReader(fs.readFileSync(database)));
  checkAgain(3);

  writeText(path.join(files, "faktury.stb"), newInvoicing(readText(path.join(files, "faktury.stb"))));
  const { KOKontakty, ...old } = chapter(4, both);
  same("rows after the upgrade", Object.entries(old).sort(), Object.entries(upgraded(filled)).sort());
  same("rows of the new table", KOKontakty.length, 300);
  const names = readByBoth(MDBReader, database).relations.map((relation) => relation.split(",")[0]);
  same("relationships by name", ["KontrahenciAdresy", "KontrahenciPlacowki"].map((name) => names.includes(name)),
       [false, true]);

  checkAgain(5);

  setPassword(database, "Żółw 2025");
  same("password of the template", new MDBReader(fs.readFileSync(database)).getPassword(), "Żółw 2025");
  const template = fs.readFileSync(database);
  chapter(6, both, "Firma 2026.mdb");
  checkTemplate({ ...old, KOKontakty }, new MDBReader(fs.readFileSync(path.join(folder, "Firma 2026.mdb"))));
  expect(fs.readFileSync(database).equals(template), "the template has changed");
});
