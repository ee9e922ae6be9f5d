// tools/harden behind its shell script.
import path from "node:path";
import { fileURLToPath, pathToFileURL } from "node:url";

import { readArguments, usage } from "./arguments.mjs";
import { build } from "./build.mjs";
import { sumReports } from "./report.mjs";
import { Run } from "./run.mjs";

const top = path.resolve(path.dirname(fileURLToPath(import.meta.url)), "../..");
// The tool's own test has parts of its own.
const table = process.env.ZIMBRAT_HARDEN_PARTS ?? path.join(top, "tools/hardening/parts.mjs");
const { parts, packages } = await import(pathToFileURL(table));
const names = parts.map(({ name }) => name);
const aims = parts.flatMap((part) => Object.entries(part.aims).map(([count, aim]) => ({ part: part.name, count, aim })));

// Runs `act`; what it throws goes to the person, with status 2.
function orEnd(act, hint = "") {
  try {
    return act();
  } catch (error) {
    process.stderr.write(`${error.message}\n${hint}`);
    return process.exit(2);
  }
}

async function harden(options) {
  const chosen = parts.filter(({ name }) => options.only.includes(name));
  orEnd(() => build(chosen, packages, top));
  process.env.ZIMBRAT_FIXTURES ??= path.join(path.dirname(top), "shared/fixtures/access");
  const run = orEnd(() => new Run({ options, parts: chosen, aims, top }));
  for (const signal of ["SIGINT", "SIGTERM", "SIGHUP"]) process.on(signal, () => run.stop());
  return await run.finish() ? 1 : 0;
}

const options = orEnd(() => readArguments(process.argv.slice(2), names), `\n${usage(names)}`);
if (options.isHelp) process.stdout.write(usage(names));
else if (options.reports) orEnd(() => process.stdout.write(`${sumReports(options.reports, aims)}\n`));
else process.exit(await harden(options));
