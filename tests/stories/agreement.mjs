// Two readers that are not ours on one database: both must find the same tables, columns, rows and relationships.
import fs from "node:fs";

import { run, same } from "./story.mjs";

const [endOfValue, endOfRow, nothing] = ["\u0001", "\u0002", "\u0003"];

const plainGuid = (text) => text.replace(/[-{}]/g, "").toLowerCase();

// mdbtools was asked for bytes as hexadecimal digits, and counts the letters of a GUID among them.
const plainText = { boolean: (text) => String(text === "1"), float: (text) => Number(text).toPrecision(6),
                    double: (text) => Number(text).toPrecision(14), currency: (text) => Number(text).toFixed(4),
                    repid: (text) => plainGuid(Buffer.from(text, "hex").toString()) };

const plainValue = { float: (value) => value.toPrecision(6), double: (value) => value.toPrecision(14),
                     currency: (value) => Number(value).toFixed(4),
                     repid: (value) => plainGuid(value),
                     datetime: (value) => value.toISOString().slice(0, 19).replace("T", " "),
                     binary: (value) => value.toString("hex"), ole: (value) => value.toString("hex") };

// Each row as texts, in an order of their own: a row that outgrew its page is read in another place.
function rowsOfMdbReader(reader, name) {
  const table = reader.getTable(name);
  const columns = table.getColumns();
  const textOf = ({ name, type }, row) => {
    const value = row[name];
    return value === null ? null : plainValue[type]?.(value) ?? String(value);
  };
  return table.getData().map((row) => JSON.stringify(columns.map((column) => textOf(column, row)))).sort();
}

function rowsOfMdbtools(database, name, columns) {
  const text = run("mdb-export", ["-H", "-Q", "-b", "hex", "-0", nothing, "-d", endOfValue, "-R", endOfRow,
                                  "-D", "%Y-%m-%d %H:%M:%S", "-T", "%Y-%m-%d %H:%M:%S", database, name]);
  return text.split(endOfRow).slice(0, -1).map((row) => {
    const values = row.split(endOfValue);
    return JSON.stringify(values.map((value, i) =>
      value === nothing ? null : plainText[columns[i].type]?.(value) ?? value));
  }).sort();
}

// Name, table, field, referred table, its field, attributes.
function relationsOf(rows) {
  return rows.map((row) => [row.szRelationship, row.szObject, row.szColumn, row.szReferencedObject,
                            row.szReferencedColumn, Number(row.grbit)].join()).sort();
}

function relationsOfMdbtools(database) {
  const [head, ...lines] = run("mdb-export", ["-Q", "-d", endOfValue, "-R", endOfRow, database, "MSysRelationships"])
    .split(/[\u0002\n]/).filter(Boolean);
  const names = head.split(endOfValue);
  return relationsOf(lines.map((line) =>
    Object.fromEntries(line.split(endOfValue).map((value, i) => [names[i], value]))));
}

// The database as both found it: tables with their rows as sorted texts, relationships.
export function readByBoth(MDBReader, database) {
  const reader = new MDBReader(fs.readFileSync(database));
  const tables = reader.getTableNames().sort();
  same("tables", run("mdb-tables", ["-1", database]).split("\n").filter(Boolean).sort(), tables);
  const rows = new Map();
  for (const name of tables) {
    const columns = reader.getTable(name).getColumns();
    rows.set(name, rowsOfMdbReader(reader, name));
    same(`columns of ${name}`, run("mdb-export", [database, name]).split("\n")[0],
         columns.map((column) => column.name).join());
    same(`rows of ${name}`, rowsOfMdbtools(database, name, columns), rows.get(name));
  }
  const relations = relationsOf(reader.getTable("MSysRelationships").getData());
  same("relationships", relationsOfMdbtools(database), relations);
  return { reader, rows, relations };
}
