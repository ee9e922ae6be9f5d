// One round: a process with a seed that says on its standard output what it reached,
//
//   harden: operations=5000 databases=2
//   harden-case: CallFaults.nowaNoSpaceOnce[1/2] calls 156 of 312
//
// the second for loops that can be completed, by shard where there are several. It ends with status 0 when it
// found nothing.
import { spawn } from "node:child_process";
import fs from "node:fs";
import path from "node:path";

function readCounts(text) {
  const counts = {};
  for (const [, line] of text.matchAll(/^harden: (.*)$/gm)) {
    for (const [, name, count] of line.matchAll(/([\w-]+)=(\d+)/g)) counts[name] = (counts[name] ?? 0) + Number(count);
  }
  return counts;
}

function readCases(text) {
  const cases = {};
  const line = /^harden-case: ([^\s[]+)(?:\[(\S+)\])? (\S+) (\d+) of (\d+)$/gm;
  for (const [, name, shard, unit, done, all] of text.matchAll(line)) {
    cases[name] ??= { unit, all: Number(all), shards: {} };
    cases[name].shards[shard ?? "1/1"] = Number(done);
  }
  return cases;
}

// What a round says when it has found something, though it be cut short.
const sign = /^found: |Failure\b|ERROR: |runtime error:|SUMMARY: |^seed \d+, round /m;
const telling = /^found: |^again: |Failure\b|ERROR: |runtime error:|SUMMARY: |terminate|differ|seed|neither/i;

function faultOf({ status, signal, isTooLong, counts, limit }) {
  if (isTooLong) return `still at work after ${limit} s`;
  if (signal) return `ended by ${signal}`;
  if (status !== 0) return `status ${status}`;
  return Object.keys(counts).length === 0 ? "said nothing of what it did" : "";
}

// The whole output, or its two ends.
function readOutput(file) {
  const most = 1 << 22;
  const input = fs.openSync(file, "r");
  const { size } = fs.fstatSync(input);
  const from = (offset) => {
    const part = Buffer.alloc(Math.min(most, size - offset));
    return part.toString("utf8", 0, fs.readSync(input, part, 0, part.length, offset));
  };
  const text = size <= most ? from(0) : `${from(0)}\n[...]\n${from(Math.max(most, size - most))}`;
  fs.closeSync(input);
  return text;
}

// The command as a person would type it at the top of the tree.
export function repeatCommand({ command, env }) {
  const quoted = (word) => (/^[\w@%+=:,./-]+$/.test(word) ? word : `'${word.replaceAll("'", "'\\''")}'`);
  return [...Object.entries(env).map(([name, value]) => `${name}=${quoted(value)}`), ...command.map(quoted)].join(" ");
}

// Starts the round in a process group of its own and in an empty temporary folder, which goes afterwards. `ended`
// becomes what came of it; `fault` is empty when nothing was found. The output stays in `output` where something was.
export function startRound({ command, env, limit, folder, output, top }) {
  fs.mkdirSync(folder, { recursive: true });
  const out = fs.openSync(output, "w");
  const start = performance.now();
  const child = spawn(command[0], command.slice(1), {
    cwd: top, detached: true, stdio: ["ignore", out, out], env: { ...process.env, ...env, TMPDIR: folder },
  });
  fs.closeSync(out);
  let isTooLong = false, isStopped = false;
  const kill = () => {
    try {
      process.kill(-child.pid, "SIGKILL");
    } catch {
      // The group has ended by itself.
    }
  };
  const timer = setTimeout(() => {
    isTooLong = true;
    kill();
  }, 1000 * limit);
  const end = (status, signal) => {
    clearTimeout(timer);
    if (child.pid) kill();
    fs.rmSync(folder, { recursive: true, force: true });
    const text = readOutput(output).replaceAll(`${top}/`, "");
    const counts = readCounts(text);
    const atStop = sign.test(text) ? "stopped after it had found something" : "";
    const fault = isStopped ? atStop : faultOf({ status, signal, isTooLong, counts, limit });
    if (!fault) fs.rmSync(output);
    return {
      isStopped, fault, counts, cases: readCases(text), seconds: (performance.now() - start) / 1000,
      told: text.split("\n").filter((line) => telling.test(line)).slice(0, 8).map((line) => line.slice(0, 300)),
    };
  };
  const ended = new Promise((resolve) => {
    child.once("exit", (status, signal) => resolve(end(status, signal)));
    child.once("error", (error) => {
      fs.appendFileSync(output, `${path.basename(command[0])}: ${error.message}\n`);
      resolve(end(127, null));
    });
  });
  const stop = () => {
    isStopped = true;
    kill();
  };
  return { ended, stop, elapsed: () => (performance.now() - start) / 1000 };
}
