// The four tasks on made structures of a given number of tables, for stories that disturb them: what each begins
// with, its command, and how its effect is recognised.
import fs from "node:fs";
import path from "node:path";

import { run } from "./story.mjs";
import { readText, writeText } from "./windows1250.mjs";

const rows = 200;
const oldTarget = Buffer.from("stara baza");
const nothingToAdd = /^Zaznacz programy/;

// Structure files of three programs and of a newer version of the first, and a database of the first with rows.
export function makeGround({ zimbratc, jetsql, generator }, folder, tables) {
  fs.mkdirSync(folder);
  run(generator, [String(2 * tables), folder, String(tables)]);
  const [first, second] = ["p0.stb", "p1.stb"].map((name) => path.join(folder, name));
  // A table of documents among the others, so that a template has something to lose.
  for (const file of [first, second]) writeText(file, readText(file).replaceAll("T002", "FA02"));
  // The second once more under other names; both need the first only.
  const third = path.join(folder, "p2.stb");
  const isOwn = (number) => Number(number) > tables - 4;
  writeText(third, readText(second).replace("Symbol=P1", "Symbol=P2").replace("Program=Program 1", "Program=Program 2")
    .replace(/\bT(\d+)\b/g, (name, number) => (isOwn(number) ? `U${number}` : name)).replace(/\bR(\d+)\b/g, "Q$1"));
  const newer = path.join(folder, "p0-nowsza.stb");
  writeText(newer, `${readText(first).replace("VerMinor=0", "VerMinor=1").replaceAll("Field=Uwagi,", "Field=Opis,")}` +
                   "[UPGRADE]\r\nRENFIELD=1.1,T001,Uwagi,Opis\r\n" +
                   "[UPDATE]\r\nEXECUTE=1.1,UPDATE T001 SET Nazwa = 'nowa'\r\n");
  run(zimbratc, ["nowa", "--folder", folder, "--nazwa", "Firma", "--struktury", first]);
  const database = path.join(folder, "Firma.mdb");
  run(jetsql, [database, ...Array.from({ length: 10 }, (_, i) =>
                 `INSERT INTO T001 (Numer, Nazwa, Uwagi) VALUES ('${i}', 'stara', String(500, 'ż'))`),
               ...Array.from({ length: rows / 10 - 1 }, (_, i) =>
                 `INSERT INTO T001 (Numer, Nazwa, Uwagi) SELECT '${i + 1}/' & Numer, Nazwa, Uwagi FROM T001 ` +
                 "WHERE Len(Numer) = 1"),
               "INSERT INTO FA02 (Numer, IdNad) SELECT Numer, Id FROM T001"]);
  const last = String(2 * tables - 4).padStart(3, "0");
  return { first, second, third, newer, last: `T${last}`, lastOfThird: `U${last}`, content: fs.readFileSync(database) };
}

// Each task: its words for the folder, the file it makes or changes and what that and the template were before, and
// queries with the answers that show the effect.
export function tasksOf(programs, folder, tables) {
  const ground = makeGround(programs, folder, tables);
  const firma = ["--baza", "Firma.mdb"];
  const made = ["--folder", ".", "--nazwa", "Nowa", "--nadpisz", "--od", "1/2031", "--do", "12/2031"];
  const kept = [`SELECT Count(*) FROM T001 WHERE Len(Uwagi) = 500`, rows];
  const files = { "Firma.mdb": ground.content };
  const over = { ...files, "Nowa.mdb": oldTarget };
  return [
    { name: "nowa", target: "Nowa.mdb", before: [{}, { "Nowa.mdb": oldTarget }],
      words: ["nowa", ...made, "--struktury", ground.first],
      effect: [["SELECT Count(*) FROM dboko WHERE Rok = 2031", 12], ["SELECT Count(*) FROM T001", 0]] },
    { name: "dodaj", target: "Firma.mdb", before: [files], words: ["dodaj", ...firma, "--struktury", ground.second],
      effect: [["SELECT Count(*) FROM dbprg", 2], [`SELECT Count(*) FROM ${ground.last}`, 0], kept],
      refusalWhenDone: nothingToAdd },
    { name: "sprawdz", target: "Firma.mdb", before: [files], words: ["sprawdz", ...firma, "--struktury", ground.newer],
      effect: [["SELECT Count(*) FROM dbprg WHERE VerMinor = 1", 1],
               ["SELECT Count(*) FROM T001 WHERE Nazwa = 'nowa' AND Len(Opis) = 500", rows]] },
    { name: "wzorzec", target: "Nowa.mdb", before: [files, over], words: ["wzorzec", "--wzorzec", "Firma.mdb", ...made],
      effect: [["SELECT Count(*) FROM dboko WHERE Rok = 2031", 12], ["SELECT Count(*) FROM FA02", 0], kept] },
  ].map((task) => ({ ...task, tables }));
}

// What is wrong with the database, should it be one with the task's effect: nothing, or a text.
export function faultOf({ jetcheck, jetsql }, task, database, attempt) {
  const check = attempt(jetcheck, [database]);
  if (check.status !== 0) return `jetcheck: ${check.stdout}${check.stderr}`;
  const asked = attempt(jetsql, ["--read-only", database, ...task.effect.map(([query]) => query)]);
  const answers = asked.stdout.split(/\r?\n/).filter((_, i) => i % 2 === 1).map(Number);
  const expected = task.effect.map(([, answer]) => answer);
  return String(answers) === String(expected) ? "" : `answers ${answers}, not ${expected}: ${asked.stderr}`;
}
