// Two programs at once on one database, on two databases of one name with one working folder, and zimbratc on a
// database into which another program keeps writing. Each time the exit statuses agree with what is in the file, whoever
// was refused was told why, no row is lost, no effect is half there, and nothing is left over.
//
//   node two_at_once.mjs ROUNDS GENERATOR -- ZIMBRATC-COMMAND... -- JETSQL-COMMAND... -- JETCHECK-COMMAND...
import { spawn } from "node:child_process";
import fs from "node:fs";
import path from "node:path";

import { makeGround } from "./made_tasks.mjs";
import { attempt, expect, rounds, tell, wordGroups } from "./story.mjs";

const [[most, generator], zimbratc, jetsql, jetcheck] = wordGroups();
const programs = { zimbratc, jetsql, jetcheck, generator };
const refusal = new RegExp(["Inny zimbrat pracuje właśnie na bazie o tej samej nazwie",
                            "Na tej bazie pracuje właśnie inny zimbrat",
                            "została otwarta w trybie wyłączności przez innego użytkownika",
                            "plik właśnie się zmienia", "Odmowa uprawnień: otwarcie.*: .*Firma\\.mdb",
                            "Nie można porównać struktur z bazą: ",
                            "bazę zajął właśnie inny program",
                            "Zakończ działanie innych programów korzystających z bazy"].join("|"));
const inUse = /^3045 /;

await tell("two-at-once", async (folder) => {
  const ground = makeGround(programs, path.join(folder, "pliki"), 10);
  const [data, other, work] = ["dane", "inne", "temp"].map((name) => path.join(folder, name));
  const env = { ...process.env, TEMP: work, ZIMBRAT_REJESTR: path.join(folder, "rejestr.reg") };
  const figures = {};

  // The queries that tell whether a command's work is in the database, and their answers when it is and when it is not.
  const add = { words: (file) => ["dodaj", "--baza", file, "--struktury", ground.second],
                query: "SELECT Count(*) FROM dbprg WHERE Indprg = 'P1'", table: ground.last };
  const addThird = { words: (file) => ["dodaj", "--baza", file, "--struktury", ground.third],
                     query: "SELECT Count(*) FROM dbprg WHERE Indprg = 'P2'", table: ground.lastOfThird };
  const upgrade = { words: (file) => ["sprawdz", "--baza", file, "--struktury", ground.newer],
                    query: "SELECT Count(*) FROM dbprg WHERE Indprg = 'P0' AND VerMinor = 1" };

  function start([program, ...first], words) {
    return new Promise((resolve) => {
      const child = spawn(program, [...first, ...words], { env, stdio: ["ignore", "ignore", "pipe"] });
      let stderr = "";
      child.stderr.setEncoding("utf8").on("data", (text) => (stderr += text));
      child.on("close", (status, signal) => resolve({ status, signal, stderr }));
    });
  }

  function lay() {
    for (const name of [data, other, work]) {
      fs.rmSync(name, { recursive: true, force: true });
      fs.mkdirSync(name);
    }
    return [data, other].map((name) => {
      fs.writeFileSync(path.join(name, "Firma.mdb"), ground.content);
      return path.join(name, "Firma.mdb");
    });
  }

  function count(database, query) {
    const asked = attempt(jetsql, ["--read-only", database, query]);
    return asked.status === 0 ? Number(asked.stdout.split(/\r?\n/)[1]) : asked.stderr.slice(0, 5).trim();
  }

  // Whether the work is there as a whole exactly when the command says so.
  function checkEffect(database, { query, table }, { status, signal, stderr }, note) {
    const done = status === 0;
    note(done || (status === 1 && refusal.test(stderr)), `status ${status ?? signal}, said ${stderr}`);
    note(count(database, query) === (done ? 1 : 0), `status ${status}, but the catalogue says otherwise`);
    // 3078: no such table.
    if (table) note(count(database, `SELECT Count(*) FROM ${table}`) === (done ? 0 : "3078"), `${table}, status ${status}`);
  }

  function checkDatabase(database, rows, note) {
    const check = attempt(jetcheck, [database]);
    note(check.status === 0, `jetcheck: ${check.stdout}${check.stderr}`);
    note(count(database, "SELECT Count(*) FROM T001") === rows, `${count(database, "SELECT Count(*) FROM T001")} rows, not ${rows}`);
  }

  function checkLeftovers(note) {
    for (const name of [data, other]) note(String(fs.readdirSync(name)) === "Firma.mdb", `left over: ${fs.readdirSync(name)}`);
    note(fs.readdirSync(work).length === 0, `left in the working folder: ${fs.readdirSync(work)}`);
  }

  function record(kind, results) {
    const done = results.filter(({ status }) => status === 0).length;
    figures[kind] ??= {};
    figures[kind][done] = (figures[kind][done] ?? 0) + 1;
  }

  // Two commands on one database.
  async function onOne(kind, commands, note) {
    const [database] = lay();
    const results = await Promise.all(commands.map((command) => start(zimbratc, command.words(database))));
    record(kind, results);
    commands.forEach((command, i) => checkEffect(database, command, results[i], note));
    if (results.every(({ status }) => status !== 0)) {
      note(fs.readFileSync(database).equals(ground.content), "both were refused, but the file has changed");
    }
    checkDatabase(database, 200, note);
    checkLeftovers(note);
  }

  // Two databases of one name: their working copies would have one name.
  async function onTwo(kind, commands, note) {
    const databases = lay();
    const results = await Promise.all(commands.map((command, i) => start(zimbratc, command.words(databases[i]))));
    record(kind, results);
    commands.forEach((command, i) => {
      checkEffect(databases[i], command, results[i], note);
      checkDatabase(databases[i], 200, note);
      if (results[i].status !== 0) {
        note(fs.readFileSync(databases[i]).equals(ground.content), "refused, but the file has changed");
      }
    });
    checkLeftovers(note);
  }

  // Another program adds a row at a time for as long as zimbratc works, and a little longer.
  async function besideWriter(kind, command, note) {
    const [database] = lay();
    let isWorking = true, written = 0, refused = 0;
    const writer = (async () => {
      for (let i = 0, after = 0; after < 2; ++i) {
        const { status, stderr } = await start(jetsql, [database, `INSERT INTO T001 (Numer) VALUES ('w${i}')`]);
        note(status === 0 || (status === 1 && inUse.test(stderr)), `the writer: status ${status}, said ${stderr}`);
        if (status === 0) written += 1;
        else refused += 1;
        if (!isWorking && status === 0) after += 1;
      }
    })();
    const result = await start(zimbratc, command.words(database));
    isWorking = false;
    await writer;
    record(kind, [result]);
    figures[`${kind}: rows written`] = (figures[`${kind}: rows written`] ?? 0) + written;
    figures[`${kind}: rows refused`] = (figures[`${kind}: rows refused`] ?? 0) + refused;
    checkEffect(database, command, result, note);
    checkDatabase(database, 200 + written, note);
    checkLeftovers(note);
  }

  const done = await rounds(Number(most), async (round) => {
    for (const [kind, how, commands] of [["dodaj and dodaj", onOne, [add, addThird]],
                                         ["dodaj and sprawdz", onOne, [add, upgrade]],
                                         ["two databases", onTwo, [add, addThird]],
                                         ["dodaj beside a writer", besideWriter, add],
                                         ["sprawdz beside a writer", besideWriter, upgrade]]) {
      await how(kind, commands, (holds, what) => expect(holds, `round ${round}, ${kind}: ${what}`));
    }
  });
  console.log(`${done} rounds; times that so many succeeded:`, figures);
});
