// The report of a run: Markdown for people, whose last line holds the same as JSON, so that reports can be added up.
import fs from "node:fs";

const mark = "harden-report ";

export function addRound(part, seed, result, finding) {
  part.rounds += 1;
  part.seconds += result.seconds;
  part.seeds = [Math.min(part.seeds?.[0] ?? seed, seed), Math.max(part.seeds?.[1] ?? seed, seed)];
  addCounts(part, result);
  if (finding) part.findings.push(finding);
}

export const emptyPart = () => ({ rounds: 0, seconds: 0, seeds: null, counts: {}, cases: {}, findings: [] });

function addCounts(sum, { counts, cases }) {
  for (const [name, count] of Object.entries(counts)) sum.counts[name] = (sum.counts[name] ?? 0) + count;
  for (const [name, { unit, all, shards }] of Object.entries(cases)) {
    // Another number of calls is another loop: the larger one stands.
    if (!sum.cases[name] || sum.cases[name].all < all) sum.cases[name] = { unit, all, shards: {} };
    if (sum.cases[name].all === all) Object.assign(sum.cases[name].shards, shards);
  }
}

export const number = (value) => String(value).replace(/\B(?=(\d{3})+$)/g, " ");
const amount = (part) => Object.entries(part.counts).map(([name, count]) => `${number(count)} ${name}`).join(", ");
export const summary = (part) => `${part.rounds} rounds${amount(part) && `, ${amount(part)}`}`;

// By the number of shards that the loop was cut into: those of one number are together the loop.
function cutsOf(loop) {
  const cuts = {};
  for (const [shard, done] of Object.entries(loop.shards)) {
    const number = shard.split("/")[1];
    cuts[number] = (cuts[number] ?? 0) + done;
  }
  return Object.values(cuts);
}
const doneOf = (loop) => Math.max(0, ...cutsOf(loop));

function loopLines(cases) {
  const loops = Object.entries(cases).sort(([a], [b]) => (a < b ? -1 : 1));
  if (loops.length === 0) return [];
  const open = loops.filter(([, loop]) => doneOf(loop) < loop.all);
  const totals = {};
  for (const [, loop] of loops) totals[loop.unit] = (totals[loop.unit] ?? 0) + doneOf(loop);
  const reached = Object.entries(totals).map(([unit, count]) => `${number(count)} ${unit}`).join(", ");
  return [`${loops.length - open.length} of ${loops.length} loops complete, ${reached} in all.`, "",
          "| loop | reached |", "| --- | --- |",
          ...loops.map(([name, loop]) =>
            `| ${name} | ${open.some(([other]) => other === name) ? `${doneOf(loop)} of` : "all"} ` +
            `${loop.all} ${loop.unit} |`), ""];
}

function findingLines(findings) {
  return findings.flatMap((finding) => [
    `- **${finding.kind}**, seed ${finding.seed}: ${finding.fault}`, "", `      ${finding.command}`, "",
    ...finding.told.map((line) => `      ${line}`), ...(finding.output ? [`  The rest is in \`${finding.output}\`.`] : []), ""]);
}

// Counts with an aim, found beside wanted.
function aimLines(parts, aims) {
  const rows = aims.filter(({ part }) => parts[part])
    .map(({ part, count, aim }) => `| ${part} | ${count} | ${number(parts[part].counts[count] ?? 0)} | ${number(aim)} |`);
  return rows.length === 0 ? [] : ["| part | count | reached | aimed at |", "| --- | --- | --- | --- |", ...rows, ""];
}

function partLines(parts) {
  return Object.entries(parts).flatMap(([name, part]) => [
    `## ${name}`, "", `${summary(part)}; ${Math.round(part.seconds)} s of processor places` +
      (part.seeds ? `, seeds ${part.seeds[0]} to ${part.seeds[1]}` : "") +
      `; ${part.rounds === 0 ? "nothing was run" : part.findings.length === 0 ? "nothing found" : `${part.findings.length} findings`}.`, "",
    ...findingLines(part.findings), ...loopLines(part.cases)]);
}

export function writeReport(file, report, aims) {
  const { date, commit, isClean, machine, seconds, asked, command, isStopped, parts } = report;
  fs.writeFileSync(file, [
    `# Hardening, ${date}`, "",
    `- commit: ${commit}${isClean ? "" : ", with changes that are not committed"}`,
    `- machine: ${machine}`,
    `- time: ${seconds} of ${asked} s${isStopped ? ", stopped by hand" : ""}`,
    `- command: \`${command}\``, "",
    ...aimLines(parts, aims), ...partLines(parts), `<!-- ${mark}${JSON.stringify(report)} -->`, ""].join("\n"));
}

// As it stands there.
function readReport(file) {
  const found = fs.readFileSync(file, "utf8").match(new RegExp(`<!-- ${mark}(.*) -->`));
  if (!found) throw new Error(`${file} is no report`);
  return found[1];
}

// Several reports as one text; the same run counts once.
export function sumReports(files, aims) {
  const reports = [...new Set(files.map(readReport))].map(JSON.parse).sort((a, b) => (a.date < b.date ? -1 : 1));
  const parts = {};
  for (const report of reports) {
    for (const [name, part] of Object.entries(report.parts)) {
      const sum = (parts[name] ??= emptyPart());
      sum.rounds += part.rounds;
      sum.seconds += part.seconds;
      sum.findings.push(...part.findings);
      addCounts(sum, part);
    }
  }
  const seedsOf = (report) => Object.entries(report.parts).filter(([, part]) => part.seeds)
    .map(([name, { seeds }]) => `${name} ${seeds[0]}-${seeds[1]}`).join(", ");
  const findingsOf = (report) => Object.values(report.parts).reduce((sum, part) => sum + part.findings.length, 0);
  return ["| run | commit | seconds | seeds | findings |", "| --- | --- | --- | --- | --- |",
          ...reports.map((report) => `| ${report.date} | ${report.commit.slice(0, 10)}${report.isClean ? "" : "+"} | ` +
                                     `${report.seconds} | ${seedsOf(report)} | ${findingsOf(report)} |`), "",
          ...aimLines(parts, aims), ...partLines(parts)].join("\n");
}
