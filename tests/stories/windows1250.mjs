// Text in the code page of the structure files.
import fs from "node:fs";

const decoder = new TextDecoder("windows-1250");
const bytes = new Map(Array.from({ length: 256 }, (_, i) => [decoder.decode(Uint8Array.of(i)), i]));

export const readText = (file) => decoder.decode(fs.readFileSync(file));

export const writeText = (file, text) => fs.writeFileSync(file, Uint8Array.from(text, (letter) => bytes.get(letter)));
