// A database password, as Access writes it into the first page of a Jet 4 file: twenty UTF-16 units, masked with
// the creation day and, like all that part of the page, with a fixed stream.
import fs from "node:fs";

const [maskedAt, maskedSize, passwordAt, createdAt] = [0x18, 0x80, 0x42, 0x72];

function toggleMask(page) {
  const key = [0xc7, 0xda, 0x39, 0x6b];
  const s = Array.from({ length: 256 }, (_, i) => i);
  for (let i = 0, j = 0; i < 256; ++i) {
    j = (j + s[i] + key[i % 4]) & 255;
    [s[i], s[j]] = [s[j], s[i]];
  }
  for (let i = 0, j = 0, n = 0; n < maskedSize; ++n) {
    i = (i + 1) & 255;
    j = (j + s[i]) & 255;
    [s[i], s[j]] = [s[j], s[i]];
    page[maskedAt + n] ^= s[(s[i] + s[j]) & 255];
  }
}

export function setPassword(database, password) {
  const content = fs.readFileSync(database);
  toggleMask(content);
  const day = Buffer.alloc(4);
  day.writeInt32LE(Math.trunc(content.readDoubleLE(createdAt)));
  const text = Buffer.from(password.padEnd(20, "\0"), "utf16le");
  for (let i = 0; i < 40; ++i) content[passwordAt + i] = text[i] ^ day[i % 4];
  toggleMask(content);
  fs.writeFileSync(database, content);
}
