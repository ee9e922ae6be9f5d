// The two readers that are not ours, as all stories need them.
import { spawnSync } from "node:child_process";
import fs from "node:fs";
import path from "node:path";
import { pathToFileURL } from "node:url";

// mdb-reader from the folder under which npm put it. Ends the story with status 77 (skipped) when it, mdbtools or
// one of the further paths is missing.
export async function requireJudges(readers, ...paths) {
  const file = path.join(readers, "node_modules/mdb-reader/lib/node/index.js");
  const isComplete = [file, ...paths].every((needed) => fs.existsSync(needed));
  if (!isComplete || spawnSync("mdb-ver", ["--help"]).error) {
    console.log("mdb-reader, mdbtools or the databases to work on are missing");
    process.exit(77);
  }
  const { default: MDBReader } = await import(pathToFileURL(file));
  return MDBReader;
}
