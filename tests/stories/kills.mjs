// zimbratc killed at random moments while it creates a database over an old one: the old file or a sound new
// one is there each time, and the next run leaves nothing else in the folder.
//
//   node kills.mjs ROUNDS ZIMBRATC JETCHECK STRUCTURES [SEED]
import { spawn, spawnSync } from "node:child_process";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import { setTimeout as sleep } from "node:timers/promises";

const [rounds, zimbratc, jetcheck, structures, given] = process.argv.slice(2);
const seed = Number(given ?? Date.now() % 1000000);
let state = seed;
// A linear congruential sequence: the same kills for the same seed, as far as the machine allows.
const random = () => (state = (state * 1103515245 + 12345) % 2147483648) / 2147483648;

const folder = fs.mkdtempSync(path.join(os.tmpdir(), "zimbrat-kills-"));
const database = path.join(folder, "Firma.mdb");
const old = Buffer.from("stara baza");
const words = ["nowa", "--folder", folder, "--nazwa", "Firma", "--nadpisz", "--struktury",
               path.join(structures, "kadry.stb")];
let faults = 0;
function expect(holds, what) {
  if (holds) return;
  faults += 1;
  console.log(`seed ${seed}: ${what}`);
}

function isOldOrSound() {
  const content = fs.readFileSync(database);
  return content.equals(old) || spawnSync(jetcheck, [database]).status === 0;
}

const whole = (() => {
  fs.writeFileSync(database, old);
  const start = performance.now();
  expect(spawnSync(zimbratc, words).status === 0, "the run without a kill failed");
  return performance.now() - start;
})();

const outcomes = { old: 0, new: 0 };
try {
  for (let round = 0; round < Number(rounds); ++round) {
    fs.writeFileSync(database, old);
    const child = spawn(zimbratc, words, { stdio: "ignore" });
    const ended = new Promise((resolve) => child.on("exit", resolve));
    await sleep(random() * whole * 1.1);
    child.kill("SIGKILL");
    await ended;
    expect(isOldOrSound(), `round ${round}: neither the old file nor a sound new one`);
    outcomes[fs.readFileSync(database).equals(old) ? "old" : "new"] += 1;
    if (round % 10 === 0) {
      expect(spawnSync(zimbratc, words).status === 0, `round ${round}: the next run failed`);
      expect(fs.readdirSync(folder).join() === "Firma.mdb",
             `round ${round}: left over: ${fs.readdirSync(folder)}`);
    }
  }
  spawnSync(zimbratc, words);
  expect(fs.readdirSync(folder).join() === "Firma.mdb", `left over: ${fs.readdirSync(folder)}`);
} finally {
  fs.rmSync(folder, { recursive: true });
}
console.log(`${rounds} kills: ${outcomes.old} left the old file, ${outcomes.new} the new one`);
process.exit(faults === 0 ? 0 : 1);
