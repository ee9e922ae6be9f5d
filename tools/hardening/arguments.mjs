// The command line of tools/harden.
import { parseArgs } from "node:util";

export const usage = (names) => `tools/harden [--seconds N] [--only PART,...] [--seed S] [--report FILE]
tools/harden --sum REPORT...

  --seconds N    how long the rounds run, without the building (1800)
  --only PART    of ${names.join(", ")} (all)
  --seed S       rounds of each part have the seeds S, S+1, ... (from the time)
  --report FILE  where the report goes (build/harden/report-<date>.md)
  --sum          adds up reports

Exit status: 0 nothing was found, 1 something was, 2 wrong arguments or nothing could be built.
`;

const options = {
  seconds: { type: "string" }, only: { type: "string" }, seed: { type: "string" }, report: { type: "string" },
  sum: { type: "boolean" }, help: { type: "boolean", short: "h" },
};

function wholeNumber(name, text, otherwise, least) {
  if (text === undefined) return otherwise;
  const number = Number(text);
  if (!/^\d+$/.test(text) || !Number.isSafeInteger(number) || number < least) {
    throw new Error(`--${name} takes a whole number from ${least} on, not ${text}`);
  }
  return number;
}

// What was asked for; throws an Error with a text for the person when that makes no sense.
export function readArguments(words, names) {
  const { values, positionals } = parseArgs({ args: words, options, allowPositionals: true });
  if (values.help) return { isHelp: true };
  if (values.sum) {
    if (positionals.length === 0) throw new Error("--sum wants reports");
    return { reports: positionals };
  }
  if (positionals.length > 0) throw new Error(`${positionals[0]}: not understood`);
  const only = values.only === undefined ? names : values.only.split(",");
  const unknown = only.find((name) => !names.includes(name));
  if (unknown !== undefined) throw new Error(`no part is called ${unknown}`);
  return {
    seconds: wholeNumber("seconds", values.seconds, 1800, 1),
    // Seeds of GoogleTest programs have 31 bits; to fuzzers 0 means any.
    seed: wholeNumber("seed", values.seed, Math.floor(Date.now() / 1000) % 2 ** 31, 1),
    only: names.filter((name) => only.includes(name)),
    report: values.report,
  };
}
