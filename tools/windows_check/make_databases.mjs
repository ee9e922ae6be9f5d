// Two databases of the check that no program of its own can make: one with a password and one that is damaged, both
// with the rows of the small company.
//
//   node make_databases.mjs ZIMBRATC JETCHECK PACKAGE
//
// PACKAGE holds the structure files already.
import fs from "node:fs";
import path from "node:path";

import { setPassword } from "../../tests/stories/password.mjs";
import { attempt, run } from "../../tests/stories/story.mjs";

const [zimbratc, jetcheck, folder] = process.argv.slice(2).map((word) => path.resolve(word));
const databases = path.join(folder, "bazy");
const inFolder = (name) => path.join(databases, name);
const password = "Tajne 2025";
const pageSize = 4096;

// Zeros in the first page from the middle on without which a repair has losses. Pages are encoded, so nothing tells
// what they hold.
function damage(file) {
  const content = fs.readFileSync(file);
  for (let page = Math.trunc(content.length / pageSize / 2); page < content.length / pageSize; ++page) {
    const damaged = Buffer.from(content).fill(0, page * pageSize, (page + 1) * pageSize);
    fs.writeFileSync(file, damaged);
    const { status } = attempt(jetcheck, ["--repair", file]);
    fs.rmSync(`${file}.uszkodzona`, { force: true });
    if (status !== 1) continue;
    fs.writeFileSync(file, damaged);
    return;
  }
  throw new Error(`no page of ${file} holds anything`);
}

fs.mkdirSync(databases);
const program = path.join(folder, "struktury", "faktury.stb");
const rows = path.join(folder, "struktury", "wiersze");
const words = ["--silnik", "wbudowany"];
run(zimbratc, ["nowa", "--folder", databases, "--nazwa", "Chroniona", "--struktury", program,
               "--od", "1/2025", "--do", "12/2025", ...words]);
for (const name of fs.readdirSync(rows).filter((name) => name.startsWith("faktury")).sort()) {
  run(zimbratc, ["sprawdz", "--baza", inFolder("Chroniona.mdb"), "--struktury", path.join(rows, name), ...words]);
}
fs.copyFileSync(inFolder("Chroniona.mdb"), inFolder("Uszkodzona.mdb"));
setPassword(inFolder("Chroniona.mdb"), password);
damage(inFolder("Uszkodzona.mdb"));
