// What zimbratc cannot or must not work on: each has its own text, ends with status 1 and leaves every file as it
// was. And passwords that must open.
//
//   node refusals.mjs ZIMBRATC-COMMAND... -- JETSQL-COMMAND... -- GENERATOR FIXTURES
//
// FIXTURES is the folder of databases made by Access, unless ZIMBRAT_FIXTURES names another. Exit status 0 as
// expected, 1 not (each on a line).
import { spawnSync } from "node:child_process";
import { createHash } from "node:crypto";
import fs from "node:fs";
import path from "node:path";

import { setPassword } from "./password.mjs";
import { attempt, expect, run, same, tell, wordGroups } from "./story.mjs";
import { readText, writeText } from "./windows1250.mjs";

const [zimbratc, jetsql, [generator, usualFixtures]] = wordGroups();
const fixtures = process.env.ZIMBRAT_FIXTURES ?? usualFixtures;
const isWindows = zimbratc.at(-1).endsWith(".exe");
// Twenty letters, as many as a password can have.
const password = "ąćęłńóśźżĄĆĘŁŃÓŚŹŻ12";

// The superuser may write anywhere: where one runs the story, the program runs as nobody.
const asNobody = process.getuid?.() === 0 ? ["setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"] : [];
const canBeNobody = !isWindows && (!asNobody.length || spawnSync(asNobody[0], [...asNobody.slice(1), ...zimbratc, "lista"],
                                                                { env: { ...process.env, HOME: "/nonexistent" } }).status === 0);

const cannotOpen = (number, description) =>
  new RegExp(`^Baza nie może zostać otwarta\\. Błąd Nr ${number} - .*${description}`);
const noRepair = /^Sprawdzenie, naprawa bazy nie powiodły się\./;

// Each: a name, what it makes of the sound database at `file`, what the program must say, further words, further
// variables. `repair` is what sprawdz says, whose first step is the repair.
const cases = [
  { name: "wrong password", make: (file) => setPassword(file, password), words: ["--haslo", password.toLowerCase()],
    text: cannotOpen(3031, "hasło") },
  { name: "empty password", make: (file) => setPassword(file, password), words: ["--haslo="],
    text: cannotOpen(3031, "hasło") },
  { name: "no password", make: (file) => setPassword(file, password), text: cannotOpen(3031, "hasło") },
  { name: "wrong password in the environment", make: (file) => setPassword(file, password),
    variables: { ZIMBRAT_HASLO: password.slice(1) }, text: cannotOpen(3031, "hasło") },
  { name: "no dbprg", make: (file) => run(jetsql, [file, "DROP TABLE dbprg"]),
    text: /^Baza: .*Firma\.mdb nie posiada struktury danych dla programów pakietu Kalmix\. Baza nie może zostać otwarta\./ },
  { name: "no dboso", make: (file) => run(jetsql, [file, "DROP TABLE dboso"]),
    text: /^Baza: .*Firma\.mdb nie posiada struktury danych dla programu: ZR\. Baza nie może zostać otwarta\. Program może/ },
  { name: "a text", make: (file) => fs.writeFileSync(file, "Zażółć gęślą jaźń\n".repeat(1000)),
    text: cannotOpen(3343, "Firma.mdb"), repair: noRepair },
  { name: "an empty file", make: (file) => fs.writeFileSync(file, ""),
    text: cannotOpen(3343, "Firma.mdb"), repair: noRepair },
  { name: "Access 97", fixture: "jet3-refuse.mdb", text: cannotOpen(3343, "Access 97"), repair: noRepair },
  { name: "Access 2007", fixture: "accdb-refuse.accdb", text: cannotOpen(3343, "Access 2007"), repair: noRepair },
  { name: "a folder", make: (file) => { fs.rmSync(file); fs.mkdirSync(file); }, text: cannotOpen("\\d+", "Firma.mdb"),
    repair: noRepair },
  { name: "no file", make: (file) => fs.rmSync(file), text: cannotOpen(3024, "Firma.mdb"), repair: noRepair },
  { name: "a file that may only be read", make: (file) => fs.chmodSync(file, 0o444), needsNobody: true, onlyChanging: true,
    text: /tylko do odczytu/, repair: noRepair },
  { name: "a folder that may only be read", make: (file) => fs.chmodSync(path.dirname(file), 0o555), needsNobody: true,
    onlyChanging: true, text: /^Wystąpił bląd .*\nSzczegóły:\nBłąd nr (70|75); \(.*Firma\.mdb/s,
    repair: /^Sprawdzenie, naprawa bazy.*\nBłąd nr 3051; \(.*Firma\.mdb/s },
];

// What a person can do about an error stands in the file beside the program, and at the end of what is said.
const explanations = new Set(readText(path.join(path.dirname(zimbratc.at(-1)), "Errormsg.txt")).split("\r\n")
  .map((line) => line.slice(line.indexOf("=") + 1)).filter((text) => text !== ""));
const isExplained = (stderr) => !/Błąd nr/i.test(stderr) || explanations.has(stderr.trimEnd().split(/\r?\n/).at(-1));

const commands = {
  stan: ["stan", "--baza", "Firma.mdb"],
  dodaj: ["dodaj", "--baza", "Firma.mdb", "--struktury", "../p1.stb"],
  sprawdz: ["sprawdz", "--baza", "Firma.mdb", "--struktury", "../p0-nowsza.stb"],
  wzorzec: ["wzorzec", "--wzorzec", "Firma.mdb", "--folder", ".", "--nazwa", "Nowa"],
};

// Everything in the folder: names, contents, rights.
function inventory(folder) {
  return fs.readdirSync(folder).sort().map((name) => {
    const state = fs.statSync(path.join(folder, name));
    const content = state.isFile() ? createHash("sha256").update(fs.readFileSync(path.join(folder, name))).digest("hex") : "";
    return [name, state.mode, state.mtimeMs, content];
  });
}

await tell("refusals", (folder) => {
  const [data, work] = ["dane", "temp"].map((name) => path.join(folder, name));
  const sound = path.join(folder, "Firma.mdb");
  run("perl", [generator, "30", folder, "10"]);
  writeText(path.join(folder, "p0-nowsza.stb"), readText(path.join(folder, "p0.stb")).replace("VerMinor=0", "VerMinor=1"));
  run(zimbratc, ["nowa", "--folder", folder, "--nazwa", "Firma", "--struktury", path.join(folder, "p0.stb")]);
  fs.chmodSync(folder, 0o755);

  function lay(make) {
    for (const name of [data, work]) {
      if (fs.existsSync(name)) fs.chmodSync(name, 0o777);
      fs.rmSync(name, { recursive: true, force: true });
      fs.mkdirSync(name);
      fs.chmodSync(name, 0o777);
    }
    const file = path.join(data, "Firma.mdb");
    fs.copyFileSync(sound, file);
    fs.chmodSync(file, 0o666);
    make(file);
  }

  function zimbrat(words, variables, isNobody) {
    const env = { ...process.env, TEMP: work, ZIMBRAT_REJESTR: path.join(work, "rejestr.reg"), ...variables };
    return attempt(isNobody ? [...asNobody, ...zimbratc] : zimbratc, words, { cwd: data, env });
  }

  function checkRefusal({ name, make, fixture, words = [], variables, text, repair, needsNobody }, command) {
    lay(make ?? ((file) => fs.copyFileSync(path.join(fixtures, fixture), file)));
    const before = inventory(data);
    const { status, stdout, stderr } = zimbrat([...commands[command], ...words], variables, needsNobody);
    const what = `${name}, ${command}`;
    same(`${what}: status and result`, [status, stdout], [1, ""]);
    const due = (command === "sprawdz" && repair) || text;
    expect(due.test(stderr.replaceAll("\r\n", "\n")), `${what}: said ${stderr}`);
    expect(isExplained(stderr), `${what}: explained nothing: ${stderr}`);
    expect(!stderr.includes(password), `${what}: tells the password`);
    same(`${what}: files`, inventory(data), before);
    same(`${what}: working folder`, fs.readdirSync(work), []);
  }

  function checkAccepted(words, variables) {
    for (const command of Object.keys(commands)) {
      lay((file) => setPassword(file, password));
      const { status, stderr } = zimbrat([...commands[command], ...words], variables);
      same(`right password, ${command}`, [status, stderr], [0, ""]);
    }
  }

  // Of three structure files the second fails: nothing of the first is in the database either.
  function checkSecondOfThree() {
    lay(() => {});
    writeText(path.join(folder, "zla.stb"), readText(path.join(folder, "p2.stb")).replace(/Field=Netto,5,/, "Field=Netto,kwota,"));
    const before = inventory(data);
    const files = ["p1.stb", "zla.stb", "p2.stb"].map((name) => `../${name}`).join(";");
    const { status, stderr } = zimbrat(["dodaj", "--baza", "Firma.mdb", "--struktury", files]);
    same("second of three: status", status, 1);
    expect(/Błąd nr 3421; .*\n.*Tablica: T017\n.*Pole: Netto\n/s.test(stderr.replaceAll("\r\n", "\n")),
           `second of three: said ${stderr}`);
    same("second of three: files", inventory(data), before);
    same("second of three: working folder", fs.readdirSync(work), []);
  }

  // A volume on which the database just fits, seen by the program and the commands around it alone.
  function checkFullDisk(command, full) {
    lay(() => {});
    const script = `mount -t tmpfs -o size=$1 tmpfs "$2" && cp -p "$3" dane/ && cd dane || exit 77
                    shift 3; "$@"; status=$?
                    cmp -s Firma.mdb ../Firma.mdb && echo "$(ls -A . ../temp)" >&2
                    exit $status`;
    const size = fs.statSync(sound).size + (1 << 16);
    const { status, stderr } = attempt(["unshare", "--mount", "sh", "-c", script, "sh", String(size),
                                        path.join(folder, full), sound, ...zimbratc], commands[command],
                                       { cwd: folder, env: { ...process.env, TEMP: work } });
    if (status === 77 || status === null) return false;
    same(`full disk, ${command}: status`, status, 1);
    expect(/Błąd nr 61; \(.*praca wymaga \d MB wolnego miejsca, jest 1 MB.*\)\nNa dysku zabrakło wolnego miejsca\. [^\n]*\n\.:\nFirma\.mdb\n\n\.\.\/temp:\n$/s.test(stderr),
           `full disk, ${command}: said and left ${stderr}`);
    return true;
  }

  let count = 0;
  for (const command of ["dodaj", "sprawdz", "wzorzec"]) {
    for (const full of ["dane", "temp"]) {
      if (isWindows || !checkFullDisk(command, full)) console.log(`left out: full disk, ${command}, ${full}`);
      else count += 1;
    }
  }
  for (const refusal of cases) {
    const isPossible = refusal.needsNobody ? canBeNobody
                                           : !refusal.fixture || fs.existsSync(path.join(fixtures, refusal.fixture));
    if (!isPossible) {
      console.log(`left out: ${refusal.name}`);
      continue;
    }
    for (const command of Object.keys(commands)) {
      if (refusal.onlyChanging && command !== "dodaj" && command !== "sprawdz") continue;
      checkRefusal(refusal, command);
      count += 1;
    }
  }
  checkAccepted(["--haslo", password]);
  checkAccepted([], { ZIMBRAT_HASLO: password });
  checkSecondOfThree();
  console.log(`${count} refusals`);
});
