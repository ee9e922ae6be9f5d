// Builds what the chosen parts need.
import { spawnSync } from "node:child_process";
import os from "node:os";

// The steps as command lines, each preset once.
function stepsFor(parts, packages) {
  const needed = [...packages, ...parts.flatMap((part) => part.packages ?? [])];
  const steps = needed.length > 0 ? [["tools/ensure_packages", ...new Set(needed)]] : [];
  const presets = parts.map((part) => part.presets ?? {});
  for (const preset of new Set(presets.flatMap(Object.keys))) {
    const targets = presets.flatMap((targetsOf) => targetsOf[preset] ?? []);
    steps.push(["cmake", "--preset", preset, "-DZIMBRAT_WERROR=ON"],
               ["cmake", "--build", "--preset", preset, `-j${os.availableParallelism()}`,
                "--target", ...new Set(targets)]);
  }
  return steps;
}

// Throws an Error with the end of the output when a step fails.
export function build(parts, packages, top) {
  for (const [program, ...words] of stepsFor(parts, packages)) {
    console.log([program, ...words].join(" "));
    const step = spawnSync(program, words, { cwd: top, encoding: "utf8", maxBuffer: 1 << 28 });
    if (step.status !== 0) throw new Error(`${step.stdout ?? ""}${step.stderr ?? step.error}`.slice(-5000));
  }
}
