// The structure files of the check: the example programs as they are, the same with statements that fill the tables
// of a small company, and the invoicing program one version on.
//
//   node make_structures.mjs STRUCTURES FOLDER
import fs from "node:fs";
import path from "node:path";

import { invoicing, newInvoicing, payroll } from "../../tests/stories/company.mjs";
import { readText, writeText } from "../../tests/stories/windows1250.mjs";

const [structures, folder] = process.argv.slice(2);

function write(name, text) {
  const file = path.join(folder, name);
  fs.mkdirSync(path.dirname(file), { recursive: true });
  writeText(file, text);
}

// A section is read as far as 2048 characters, so the statements need several files.
const most = 2000;

// The structure of `text` with the statements in place of its own: a check carries out those of the version that
// the database has.
function filling(text, statements) {
  const [major, minor] = ["VerMajor", "VerMinor"].map((key) => text.match(new RegExp(`^${key}=(\\d+)`, "m"))[1]);
  const files = [""];
  for (const statement of statements) {
    const line = `EXECUTE=${major}.${minor},${statement.replace(/\s*\n\s*/g, " ")}\r\n`;
    if (files.at(-1).length + line.length > most) files.push("");
    files[files.length - 1] += line;
  }
  const structure = text.slice(0, text.indexOf("[UPDATE]"));
  return files.map((lines) => `${structure}[UPDATE]\r\n${lines}`);
}

for (const [name, statements] of [["faktury", invoicing], ["kadry", payroll]]) {
  const text = readText(path.join(structures, `${name}.stb`));
  write(`${name}.stb`, text);
  filling(text, statements).forEach((filled, i) => write(path.join("wiersze", `${name}-${i + 1}.stb`), filled));
  if (name === "faktury") write(path.join("nowe", `${name}.stb`), newInvoicing(text));
}
