// Which engine zimbratc works with, where DAO is registered and where it is not: by itself, by the option, by the
// variable.
//
//   node installed_engine.mjs ZIMBRATC-COMMAND... -- REGISTRATION STRUCTURES
//
// REGISTRATION is the .reg file of a Wine prefix that has DAO. Exit status 0 as expected, 1 not (each on a line).
import fs from "node:fs";
import path from "node:path";

import { attempt, expect, same, tell, wordGroups } from "./story.mjs";

const [zimbratc, [registration, structures]] = wordGroups();
const { ZIMBRAT_SILNIK: _, ZIMBRAT_WINE_REGISTRY: __, ...plain } = process.env;
const withDao = { ...plain, ZIMBRAT_WINE_REGISTRY: registration };
const wish = (environment, word) => ({ ...environment, ZIMBRAT_SILNIK: word });

const embedded = /^wbudowany \(Jet 4\.0\)\r?\n$/;
const installed = /^zainstalowany w systemie: DAO\.DBEngine\.120, wersja 16\.0\r?\n$/;
const missing = /W systemie nie ma silnika baz danych DAO, którego mógłby użyć program 64-bitowy\./;

// Each: where, further words, what `silnik` prints; `missing` on standard error with status 1.
const cases = [
  { name: "found", environment: withDao, prints: installed },
  { name: "asked for", environment: withDao, words: ["--silnik", "zainstalowany"], prints: installed },
  { name: "asked for by the variable", environment: wish(withDao, "zainstalowany"), prints: installed },
  { name: "refused", environment: withDao, words: ["--silnik", "wbudowany"], prints: embedded },
  { name: "refused by the variable", environment: wish(withDao, "wbudowany"), prints: embedded },
  { name: "not there", environment: plain, prints: embedded },
  { name: "not there, asked for", environment: plain, words: ["--silnik", "zainstalowany"], prints: missing },
  { name: "not there, asked for by the variable", environment: wish(plain, "zainstalowany"), prints: missing },
];

await tell("installed-engine", (folder) => {
  const program = path.join(structures, "magazyn.stb");
  for (const { name, environment, words = [], prints } of cases) {
    const isMissing = prints === missing;
    const engine = attempt(zimbratc, ["silnik", ...words], { env: environment });
    expect(prints.test(isMissing ? engine.stderr : engine.stdout), `${name}: ${engine.stdout}${engine.stderr}`);
    same(`${name}: status`, engine.status, isMissing ? 1 : 0);

    const made = attempt(zimbratc, ["nowa", "--folder", ".", "--nazwa", "Firma", "--struktury", program,
                                    "--od", "1/2025", "--do", "12/2025", ...words], { env: environment, cwd: folder });
    same(`${name}: new database: ${made.stderr}`, made.status, isMissing ? 1 : 0);
    if (isMissing) expect(missing.test(made.stderr), `${name}: new database: ${made.stderr}`);
    same(`${name}: files`, fs.readdirSync(folder), isMissing ? [] : ["Firma.mdb"]);
    fs.rmSync(path.join(folder, "Firma.mdb"), { force: true });
  }
});
