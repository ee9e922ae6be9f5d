// What every story needs: commands to run, differences to count.
import { spawnSync } from "node:child_process";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";

let differences = 0;

// Counts a difference and shows it, at most `most` characters of each side.
export function same(what, found, expected, most = 2000) {
  const [a, b] = [JSON.stringify(found), JSON.stringify(expected)];
  if (a === b) return;
  differences += 1;
  let at = 0;
  while (a?.[at] === b?.[at]) at += 1;
  const from = Math.max(0, at - most / 2);
  console.log(`${what}\n  found    ${a?.slice(from, from + most)}\n  expected ${b?.slice(from, from + most)}`);
}

export function expect(holds, what) {
  if (holds) return;
  differences += 1;
  console.log(what);
}

export const hasDifferences = () => differences > 0;

// A command that must end with status 0: its standard output. The program may be several words.
export function run(program, args, options = {}) {
  const result = attempt(program, args, options);
  if (result.status !== 0) {
    throw new Error(`${[program].flat().join(" ")} ${args.join(" ")}: ${result.stdout}${result.stderr}`);
  }
  return result.stdout;
}

export function attempt(program, args, options = {}) {
  const [first, ...start] = [program].flat();
  return spawnSync(first, [...start, ...args], { encoding: "utf8", maxBuffer: 1 << 26, ...options });
}

// Runs the story in a folder of its own, which goes afterwards, and ends the program: status 1 after differences.
export async function tell(name, story) {
  const folder = fs.realpathSync(fs.mkdtempSync(path.join(os.tmpdir(), `zimbrat-${name}-`)));
  try {
    await story(folder);
  } finally {
    fs.rmSync(folder, { recursive: true, force: true });
  }
  process.exit(hasDifferences() ? 1 : 0);
}

// Runs the rounds one after another; Ctrl+C ends after the current one. Returns how many there were.
export async function rounds(count, round) {
  let isStopped = false, done = 0;
  process.once("SIGINT", () => (isStopped = true));
  for (; done < count && !isStopped; ++done) await round(done);
  return done;
}

// The words of the command line, split at "--".
export function wordGroups() {
  const groups = [[]];
  for (const word of process.argv.slice(2)) {
    if (word === "--") groups.push([]);
    else groups.at(-1).push(word);
  }
  return groups;
}
