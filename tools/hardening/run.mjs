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
      parts: parts.map((part) => ({ ...part, kinds: part.kinds(top) })),
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
    if (result.isStopped) return;
    const round = this.roundOf(part, seed);
    const finding = result.fault && {
      kind: round.name, seed, fault: result.fault, told: result.told, command: repeatCommand(round),
      output: path.relative(path.dirname(this.file), this.outputOf(part, seed)),
    };
    addRound(this.report.parts[part.name], seed, result, finding);
    this.teller.round(part.name, seed, round.name, result);
  }

  stop() {
    this.report.isStopped = true;
    this.share.stop();
  }

  // Returns whether something was found.
  async finish() {
    fs.mkdirSync(this.logs, { recursive: true });
    const begin = performance.now();
    await this.share.run();
    this.report.seconds = Math.round((performance.now() - begin) / 1000);
    fs.rmSync(this.ground, { recursive: true, force: true });
    if (fs.readdirSync(this.logs).length === 0) fs.rmdirSync(this.logs);
    writeReport(this.file, this.report, this.aims);
    this.teller.end(this.file);
    return Object.values(this.report.parts).some((part) => part.findings.length > 0);
  }
}
