// One run of rounds from beginning to report.
import { spawnSync } from "node:child_process";
import fs from "node:fs";
import os from "node:os";
import path from "node:path";

import { addRound, emptyPart, writeReport } from "./report.mjs";
import { repeatCommand, startRound } from "./round.mjs";
import { Share } from "./share.mjs";
import { Teller } from "./teller.mjs";

function beginReport(options, top) {
  const git = (...words) => spawnSync("git", words, { cwd: top, encoding: "utf8" }).stdout?.trim() ?? "";
  const memory = Math.round(os.totalmem() / 2 ** 30);
  return {
    date: new Date().toISOString().slice(0, 19), commit: git("rev-parse", "HEAD") || "unknown",
    isClean: git("status", "--porcelain") === "",
    machine: `${os.availableParallelism()} processors (${os.cpus()[0]?.model}), ${memory} GiB, ` +
             `${os.type()} ${os.release()}`,
    command: `tools/harden --seconds ${options.seconds} --only ${options.only} --seed ${options.seed}`,
    seconds: 0, asked: options.seconds, isStopped: false,
    parts: Object.fromEntries(options.only.map((name) => [name, emptyPart()])),
  };
}

const secondsToSave = 60;

function withKinds(part, top) {
  const kinds = part.kinds(top);
  if (kinds.length === 0) throw new Error(`${part.name} has nothing to run`);
  return { ...part, kinds };
}

export class Run {
  constructor({ options, parts, aims, top }) {
    Object.assign(this, { options, aims, top });
    this.report = beginReport(options, top);
    const name = `report-${this.report.date.replaceAll(":", "")}`;
    this.file = path.resolve(options.report ?? path.join(top, "build/harden", `${name}.md`));
    // What rounds said that found something.
    this.logs = path.join(path.dirname(this.file), `${path.basename(this.file, ".md")}-findings`);
    // A folder in memory where there is one.
    this.ground = fs.mkdtempSync(path.join(fs.existsSync("/dev/shm") ? "/dev/shm" : os.tmpdir(), "zimbrat-harden-"));
    this.share = new Share({
      parts: parts.map((part) => withKinds(part, top)),
      seconds: options.seconds, seed: options.seed, places: os.availableParallelism(),
      start: (part, seed) => this.start(part, seed), tell: (part, seed, result) => this.take(part, seed, result),
    });
    this.teller = new Teller(this.report, this.share);
  }

  roundOf(part, seed) {
    const kind = part.kinds[seed % part.kinds.length];
    return { ...kind, env: { ...kind.env, ZIMBRAT_SEED: String(seed) } };
  }

  outputOf(part, seed) {
    return path.join(this.logs, `${part.name}-${seed}.txt`);
  }

  start(part, seed) {
    return startRound({ ...this.roundOf(part, seed), limit: part.limit, top: this.top, output: this.outputOf(part, seed),
                        folder: path.join(this.ground, `${part.name}-${seed}`) });
  }

  take(part, seed, result) {
    if (result.isStopped && !result.fault) return;
    const round = this.roundOf(part, seed);
    const finding = result.fault && {
      kind: round.name, seed, fault: result.fault, told: result.told, command: repeatCommand(round),
      output: path.relative(path.dirname(this.file), this.outputOf(part, seed)),
    };
    addRound(this.report.parts[part.name], seed, result, finding);
    this.teller.round(part.name, seed, round.name, result);
    if (performance.now() - this.saved > 1000 * secondsToSave) this.save(true);
  }

  stop() {
    this.report.isStopped = true;
    this.share.stop();
  }

  save(isStopped) {
    this.saved = performance.now();
    this.report.seconds = Math.round((this.saved - this.begin) / 1000);
    writeReport(this.file, { ...this.report, isStopped }, this.aims);
  }

  // A count that nobody reached once every kind has had its turn: a test is gone, or says nothing.
  addMissingCounts() {
    for (const { part, kinds, next } of this.share.ends()) {
      const { rounds, counts, findings } = this.report.parts[part];
      for (const { count } of this.aims.filter((aim) => aim.part === part && !counts[aim.count])) {
        if (rounds < kinds || this.report.isStopped) continue;
        findings.push({ kind: "all", seed: next - 1, fault: `no ${count} in ${rounds} rounds`, told: [], command: "" });
      }
    }
  }

  // Returns whether something was found.
  async finish() {
    fs.mkdirSync(this.logs, { recursive: true });
    this.begin = this.saved = performance.now();
    try {
      await this.share.run();
      this.addMissingCounts();
    } finally {
      fs.rmSync(this.ground, { recursive: true, force: true });
      if (fs.readdirSync(this.logs).length === 0) fs.rmdirSync(this.logs);
      this.save(this.report.isStopped);
    }
    this.teller.end(this.file);
    return Object.values(this.report.parts).some((part) => part.findings.length > 0);
  }
}
