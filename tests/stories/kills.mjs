// zimbratc killed at random moments of each of its four tasks, on databases of about 10 and 60 tables. Afterwards the
// old file is there byte for byte, or a sound new one with the task's effect, and the template is as it was; the same
// command simply works again, and after it nothing else is left, neither beside the database nor in the working folder.
//
// A kill counts when the process died of it and was at work: its files lay about, or it had put the database in place.
//
//   node kills.mjs ROUNDS ZIMBRATC JETSQL JETCHECK GENERATOR [SEED]     the seed also from ZIMBRAT_SEED
import { spawn } from "node:child_process";
import fs from "node:fs";
import path from "node:path";
import { setTimeout as sleep } from "node:timers/promises";

import { faultOf, tasksOf } from "./made_tasks.mjs";
import { attempt, expect, rounds, tell } from "./story.mjs";

const [count, ...words] = process.argv.slice(2);
const [zimbratc, jetsql, jetcheck, generator] = words.slice(0, 4).map((program) => path.resolve(program));
const given = words[4] ?? process.env.ZIMBRAT_SEED;
const programs = { zimbratc, jetsql, jetcheck, generator };
const seed = Number(given ?? Date.now() % 1000000);
let state = seed;
// The same kills for the same seed, as far as the machine allows.
function random() {
  state = (state + 0x6D2B79F5) | 0;
  let bits = Math.imul(state ^ (state >>> 15), state | 1);
  bits ^= bits + Math.imul(bits ^ (bits >>> 7), bits | 61);
  return ((bits ^ (bits >>> 14)) >>> 0) / 2 ** 32;
}

await tell("kills", async (folder) => {
  const [data, work] = ["dane", "temp"].map((name) => path.join(folder, name));
  const env = { ...process.env, TEMP: work, ZIMBRAT_REJESTR: path.join(folder, "rejestr.reg") };
  const options = { cwd: data, env };

  function lay(before) {
    for (const name of [data, work]) {
      fs.rmSync(name, { recursive: true, force: true });
      fs.mkdirSync(name);
    }
    for (const [name, content] of Object.entries(before)) fs.writeFileSync(path.join(data, name), content);
  }

  // Uniformly over the time that a whole run takes, and a little beyond. Returns whether it died of that; what ended
  // before must have succeeded.
  async function kill(task, note) {
    const child = spawn(zimbratc, task.words, { ...options, stdio: "ignore" });
    let wasSent = false;
    const ended = new Promise((resolve) =>
      child.on("exit", (status, signal) => resolve({ status, signal, isOurs: wasSent && signal === "SIGKILL" })));
    await sleep(random() * task.whole * 1.1);
    wasSent = true;
    child.kill("SIGKILL");
    const { status, signal, isOurs } = await ended;
    note(isOurs || status === 0, `it ended by itself with ${signal ?? `status ${status}`}`);
    return isOurs;
  }

  // Whether there are files that the run made for itself.
  const hasOwnFiles = (task, before) =>
    fs.readdirSync(work).length > 0 || fs.readdirSync(data).some((name) => !before[name] && name !== task.target);

  function isAsBefore(name, before) {
    const file = path.join(data, name);
    return fs.existsSync(file) ? Boolean(before[name]?.equals(fs.readFileSync(file))) : !before[name];
  }

  function checkNextRun(task, before, wasDone, note) {
    const done = wasDone ? fs.readFileSync(path.join(data, task.target)) : null;
    const next = attempt(zimbratc, task.words, options);
    if (wasDone && task.refusalWhenDone) {
      note(next.status === 1 && task.refusalWhenDone.test(next.stderr) &&
           done.equals(fs.readFileSync(path.join(data, task.target))), `the next run was not refused: ${next.stderr}`);
    } else {
      note(next.status === 0, `the next run failed: ${next.stderr}`);
    }
    const fault = faultOf(programs, task, path.join(data, task.target), attempt);
    note(!fault, `after the next run: ${fault}`);
    const names = [...new Set([...Object.keys(before), task.target])].sort();
    note(String(fs.readdirSync(data)) === String(names), `left over: ${fs.readdirSync(data)}`);
    note(fs.readdirSync(work).length === 0, `left in the working folder: ${fs.readdirSync(work)}`);
  }

  const tasks = [10, 60].flatMap((tables) => tasksOf(programs, path.join(folder, `pliki${tables}`), tables));
  for (const task of tasks) {
    task.whole = 0;
    for (const share of [0.5, 0.5]) {
      lay(task.before.at(-1));
      const start = performance.now();
      const run = attempt(zimbratc, task.words, options);
      task.whole += share * (performance.now() - start);
      const fault = faultOf(programs, task, path.join(data, task.target), attempt);
      expect(run.status === 0 && !fault, `${task.name}, ${task.tables} tables, without a kill: ${run.stderr}${fault}`);
    }
    task.outcomes = { old: 0, new: 0 };
  }
  const kills = { counted: 0, early: 0, late: 0 };
  const done = await rounds(Number(count), async (round) => {
    const task = tasks[round % tasks.length];
    const note = (holds, what) =>
      expect(holds, `seed ${seed}, round ${round}: ${task.name}, ${task.tables} tables: ${what}`);
    const before = task.before[Math.floor(random() * task.before.length)];
    lay(before);
    const wasAlive = await kill(task, note);
    const isOld = isAsBefore(task.target, before);
    kills[!wasAlive ? "late" : !isOld || hasOwnFiles(task, before) ? "counted" : "early"] += 1;
    if (wasAlive) task.outcomes[isOld ? "old" : "new"] += 1;
    if (!isOld) {
      const fault = faultOf(programs, task, path.join(data, task.target), attempt);
      note(!fault, `neither the old file nor a whole new one: ${fault}`);
    }
    for (const name of Object.keys(before)) {
      note(name === task.target || isAsBefore(name, before), `${name} has changed`);
    }
    checkNextRun(task, before, !isOld, note);
  });
  console.log(`${done} rounds, seed ${seed}`);
  console.log(`harden: kills=${kills.counted} kills-before-work=${kills.early} ends-before-kill=${kills.late}`);
  for (const { name, tables, whole, outcomes } of tasks) {
    console.log(`${name}, ${tables} tables, ${Math.round(whole)} ms: ` +
                `${outcomes.old} kills left the old file, ${outcomes.new} the new one`);
  }
});
