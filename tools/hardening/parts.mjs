// The parts of tools/harden. Each has kinds of rounds; the round of seed s is of kind s
// modulo their number. Of a loop every kind runs once, since it does the same each time.
//
//   presets  what is built, by preset: targets
//   kinds    the kinds, once everything is built: name, command, env
//   limit    seconds after which a round counts as hanging
//   aims     counts that all runs together are to reach
import { spawnSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";

const asan = "build/asan", native = "build/native";

// The names of the tests in a GoogleTest program, as a filter takes them.
function testsOf(program, top) {
  const listed = spawnSync(program, ["--gtest_list_tests"], { cwd: top, encoding: "utf8" });
  if (listed.status !== 0) throw new Error(`${program} does not list its tests: ${listed.stderr ?? listed.error}`);
  let suite = "";
  return listed.stdout.split("\n").flatMap((line) => {
    const word = line.replace(/ *#.*/, "");
    if (/^\S+\.$/.test(word)) suite = word;
    return /^ {2}\S+$/.test(word) ? [suite + word.trim()] : [];
  });
}

const gtest = (name, program, filter, env = {}) =>
  ({ name, command: [program, `--gtest_filter=${filter}`], env });

const modelKinds = () =>
  ["Plain", "Encoded"].map((file) =>
    gtest(file, `${asan}/tests/jet/jet_long_tests`, `*RandomWork*${file}`, { ZIMBRAT_STEPS: "6000" }));

// Five rounds of damaged files to one of flipped bits and one of lost pages. Short traces of allocations make
// the sanitizers twice as fast.
const damageKinds = () => {
  const round = (name, filter, env) =>
    gtest(name, `${asan}/tests/damage/damage_tests`, filter, { ASAN_OPTIONS: "malloc_context_size=4:max_allocation_size_mb=64", ...env });
  const files = round("files", "DamagedFiles.*", { ZIMBRAT_DAMAGES: "1500" });
  return [files, files, files, files, files, round("flips", "Detection.*", { ZIMBRAT_FLIPS: "10" }),
          round("pages", "LostPages.*", { ZIMBRAT_LOST_PAGES: "8" })];
};

const loops = /\bTasks\/(CallFaults|Crashes|FullDisk|Interrupts|MemoryFaults|PowerLosses)\./;
const nameOfLoop = (test) => test.replace(/^Tasks.(\w+)\..*\//, "$1.");

// The loops over allocations are tens of thousands of runs each, in parts of a minute at most.
const shardsOf = (test) => (/sprawdzUszkodzona/.test(test) ? 16 : 6);
const memoryKinds = (program, test) =>
  Array.from({ length: shardsOf(test) }, (_, i) => `${i + 1}/${shardsOf(test)}`).map((shard) =>
    gtest(`${nameOfLoop(test)}[${shard}]`, program, test, { ZIMBRAT_ALL: "1", ZIMBRAT_SHARD: shard }));

const faultKinds = (top) => {
  const tests = (program) => testsOf(program, top).filter((test) => loops.test(test)).map((test) => [program, test]);
  return [
    ...tests(`${asan}/tests/adversity/adversity_tests`)
      .map(([program, test]) => gtest(nameOfLoop(test), program, test, { ZIMBRAT_ALL: "1" })),
    ...tests(`${native}/tests/adversity/memory_tests`).flatMap(([program, test]) => memoryKinds(program, test)),
  ];
};

const killKinds = () => [{
  name: "kills", env: {},
  command: ["node", "tests/stories/kills.mjs", "40",
            ...["zimbratc", "jetsql", "jetcheck"].map((program) => `${native}/${program}`), "bench/make_structures"],
}];

const fuzzKinds = (top) =>
  fs.readdirSync(path.join(top, "fuzz/corpus")).sort()
    .map((target) => ({ name: target, command: ["fuzz/round", target, "20"], env: {} }));

export const parts = [
  { name: "model", presets: { asan: ["jet_long_tests"] }, kinds: modelKinds, limit: 600,
    aims: { operations: 1000000 } },
  { name: "damage", presets: { asan: ["damage_tests"] }, kinds: damageKinds, limit: 600,
    aims: { "damaged-files": 100000, "flipped-bits": 100000, "lost-pages": 10000 } },
  { name: "fuzz", presets: { fuzz: ["fuzz/all"] }, packages: ["clang"], kinds: fuzzKinds, limit: 300,
    aims: { runs: 50000000 } },
  { name: "fault", presets: { asan: ["adversity_tests"], native: ["memory_tests"] }, kinds: faultKinds, limit: 900,
    isLoop: true, aims: {} },
  // Sanitizers would make a run of the program, and so each kill, five times as long; so it is with allocations.
  { name: "kill", presets: { native: ["zimbratc", "jetsql", "jetcheck"] }, kinds: killKinds, limit: 600,
    aims: { kills: 10000 } },
];

export const packages = ["cmake", "ninja-build", "g++", "ccache", "googletest"];
