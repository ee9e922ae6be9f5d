// What is said while rounds run: a line each, or on a terminal one line that is written anew each second.
import { summary } from "./report.mjs";

export class Teller {
  constructor(report, share) {
    Object.assign(this, { report, share });
    if (process.stdout.isTTY) this.timer = setInterval(() => this.draw(), 1000);
  }

  draw() {
    const parts = Object.entries(this.report.parts).map(([name, part]) =>
      `${name}: ${summary(part)}${part.findings.length > 0 ? `, ${part.findings.length} FINDINGS` : ""}`);
    const line = `${Math.round(this.share.secondsLeft())} s left; ${parts.join("; ")}`;
    process.stdout.write(`\r${line.slice(0, (process.stdout.columns ?? 80) - 1)}\x1b[K`);
  }

  round(part, seed, kind, result) {
    if (this.timer && !result.fault) return;
    const counts = Object.entries(result.counts).map(([count, value]) => `${value} ${count}`).join(", ");
    this.write(`${part} ${seed} ${kind}: ${result.fault || counts} (${Math.round(result.seconds)} s)`);
  }

  write(line) {
    console.log(`${this.timer ? "\r\x1b[K" : ""}${line}`);
  }

  end(file) {
    clearInterval(this.timer);
    for (const [name, part] of Object.entries(this.report.parts)) {
      this.write(`${name}: ${summary(part)}, ${part.findings.length} findings`);
    }
    this.write(file);
  }
}
