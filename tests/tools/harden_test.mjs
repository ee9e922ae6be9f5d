// harden_test.mjs HARDEN: tools/harden with rounds that are one line of shell. How it shares time, what it counts,
// what is a finding, its statuses, the sum of reports.
import { spawn, spawnSync } from "node:child_process";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";
import { setTimeout as sleep } from "node:timers/promises";

const [harden] = process.argv.slice(2);
const folder = fs.mkdtempSync(path.join(os.tmpdir(), "zimbrat-harden-test-"));
let failures = 0;

function expect(holds, what) {
  if (holds) return;
  failures += 1;
  console.log(what);
}

const work = "sleep 0.1; echo harden: operations=3 files=1";
// name: [lines of shell, one a kind of round; whether it is a loop]
const fakes = {
  even: [[work, work]],
  slow: [[`sleep 0.3; ${work}`]],
  loop: [["echo 'harden-case: A.one calls 7 of 7'; echo harden: faults=7",
          "echo 'harden-case: A.two[1/2] calls 4 of 8'; echo harden: faults=4"], true],
  sour: [["[ $((ZIMBRAT_SEED % 2)) = 0 ] || { echo harden: operations=1; echo 'x.cpp:1: Failure'; exit 3; }; " + work]],
  mute: [["true"]],
  hung: [["sleep 60"]],
  gone: [["kill -9 $$"]],
  long: [["sleep 60"]],
  torn: [["echo 'x.cpp:2: Failure'; sleep 60"]],
  flood: [[`head -c 600000000 /dev/zero | tr '\\0' x; echo; ${work}`]],
  empty: [[]],
  idle: [["echo harden: others=1"]],
};
const shell = (line, i) => ({ name: `k${i}`, command: ["sh", "-c", line], env: {} });
fs.writeFileSync(path.join(folder, "parts.mjs"), `
  const shell = ${shell};
  export const packages = [];
  export const parts = Object.entries(${JSON.stringify(fakes)}).map(([name, [lines, isLoop]]) =>
    ({ name, isLoop, kinds: () => lines.map(shell), limit: name === "hung" ? 0.5 : 30,
       aims: ["even", "idle"].includes(name) ? { operations: 1000 } : {} }));`);
const options = { encoding: "utf8", env: { ...process.env, ZIMBRAT_HARDEN_PARTS: path.join(folder, "parts.mjs") } };

function run(report, ...words) {
  const file = path.join(folder, report);
  const { status, stdout, stderr } = spawnSync(harden, [...words, "--report", file], options);
  return { status, stdout, stderr, ...readReport(file) };
}

function readReport(file) {
  const text = fs.existsSync(file) ? fs.readFileSync(file, "utf8") : "";
  return { text, data: JSON.parse(text.match(/harden-report (.*) -->/)?.[1] ?? "null") };
}

// Two parts have the same time, whatever their rounds last; counts are those of the rounds; seeds follow each other.
const shared = run("shared.md", "--seconds", "3", "--only", "even,slow", "--seed", "40");
const { even, slow } = shared.data.parts;
expect(shared.status === 0, `sound rounds: ${shared.status} ${shared.stdout}${shared.stderr}`);
expect(even.counts.operations === 3 * even.rounds && even.counts.files === even.rounds, JSON.stringify(even));
expect(even.seeds[0] === 40 && even.seeds[1] === 39 + even.rounds, `seeds: ${even.seeds}, ${even.rounds} rounds`);
expect(slow.rounds >= 2 && even.rounds > slow.rounds && slow.seconds < 2.5 * even.seconds && even.seconds < 2.5 * slow.seconds,
       `shares: ${even.seconds} and ${slow.seconds} s`);
expect(shared.text.includes("nothing found") && /\| even \| operations \| \d+ \| 1 000 \|/.test(shared.text), shared.text);

// A loop runs each kind once and leaves its time to others.
const loop = run("loop.md", "--seconds", "30", "--only", "loop", "--seed", "1");
expect(loop.data.parts.loop.rounds === 2 && loop.data.seconds < 20, JSON.stringify(loop.data));
expect(loop.text.includes("| A.one | all 7 calls |") && loop.text.includes("| A.two | 4 of 8 calls |"), loop.text);

// What is a finding: the status, a signal, silence, no end. Each tells how to see it again.
for (const [part, fault] of [["sour", "status 3"], ["mute", "said nothing"], ["hung", "still at work after 0.5 s"],
                             ["gone", "ended by SIGKILL"], ["idle", "no operations in"]]) {
  const found = run(`${part}.md`, "--seconds", "1", "--only", part, "--seed", "7");
  const [finding] = found.data.parts[part].findings;
  expect(found.status === 1, `${part}: status ${found.status}`);
  expect(finding?.fault.includes(fault) && finding.seed % 2 === 1 | part !== "sour", `${part}: ${JSON.stringify(finding)}`);
  if (part === "idle") continue;
  expect(found.text.includes(`ZIMBRAT_SEED=${finding?.seed} sh -c `), `${part}: no command: ${found.text}`);
  const output = path.join(folder, `${part}-findings`, `${part}-${finding?.seed}.txt`);
  expect(fs.existsSync(output), `${part}: ${output} is missing`);
  if (part === "sour") {
    expect(fs.readFileSync(output, "utf8").includes("x.cpp:1: Failure") && found.text.includes("x.cpp:1: Failure"), found.text);
    expect(found.data.parts.sour.counts.operations > 0, "rounds that found nothing count too");
  }
}

// More output than a string can hold is read at its ends.
const flood = run("flood.md", "--seconds", "1", "--only", "flood");
expect(flood.status === 0 && flood.data.parts.flood.counts.operations >= 3, `flood: ${flood.status} ${flood.stderr}`);

// Ctrl+C: an end at once, with a report, and with what the rounds had found by then.
const stopped = path.join(folder, "stopped.md");
const child = spawn(harden, ["--seconds", "600", "--only", "even,long,torn", "--report", stopped], { ...options, stdio: "pipe" });
let told = "";
child.stdout.on("data", (text) => {
  told += text;
  if (/even \d+ k/.test(told)) setTimeout(() => child.kill("SIGINT"), 500);  // meanwhile the torn one begins
});
const status = await Promise.race([new Promise((resolve) => child.on("exit", resolve)), sleep(20000)]);
const { text, data } = readReport(stopped);
expect(status === 1 && data?.isStopped && data.parts.even.rounds > 0 && data.parts.long.rounds === 0 &&
       data.parts.torn.findings.length > 0, `stopped: ${status} ${text}`);
child.kill("SIGKILL");

// The sum: counts and seconds of different runs, the same run once; loops by shard.
const again = run("again.md", "--seconds", "1", "--only", "even,loop", "--seed", "1");
const files = ["shared.md", "again.md", "loop.md", "shared.md"].map((name) => path.join(folder, name));
const sum = spawnSync(harden, ["--sum", ...files], options);
const all = even.counts.operations + again.data.parts.even.counts.operations;
expect(sum.status === 0 && sum.stdout.includes(`| even | operations | ${all} | 1 000 |`), `${all}: ${sum.stdout}${sum.stderr}`);
expect(sum.stdout.includes("1 of 2 loops complete, 11 calls in all"), sum.stdout);

for (const words of [["--seconds", "x"], ["--only", "even,odd"], ["--only", "empty"], ["--seed"], ["--seed", "0"], ["what"], ["--sum"],
                     ["--sum", path.join(folder, "parts.mjs")]]) {
  expect(spawnSync(harden, words, options).status === 2, `${words}: not refused`);
}
fs.rmSync(folder, { recursive: true });
process.exit(failures === 0 ? 0 : 1);
