// What structure files ask for, and whether a database has exactly that, by two readers that are not ours: tables,
// fields, types, sizes, Required, defaults, indexes, relationships, programs.
import { run, same } from "./story.mjs";
import { readText } from "./windows1250.mjs";

// --- what the structure files say -----------------------------------------------------------------

const isTrue = (text) => /^true$/i.test(text) || (Number(text) !== 0 && !Number.isNaN(Number(text)));

function readSections(file) {
  const sections = new Map();
  let lines;
  for (const line of readText(file).split("\r\n")) {
    if (line.startsWith("[")) sections.set(line.slice(1, -1), (lines = []));
    else if (line && !line.startsWith(";") && lines) {
      const at = line.indexOf("=");
      lines.push([line.slice(0, at), line.slice(at + 1)]);
    }
  }
  return sections;
}

function readTable(lines) {
  const table = { fields: [], indexes: [] };
  for (const [key, value] of lines) {
    const items = value.split(",");
    if (key === "Field") {
      const [name, type, size, defaultValue, required, , attributes] = items;
      table.fields.push({ name, type: Number(type), size: Number(size), defaultValue,
                          required: isTrue(required), isCounter: attributes === "17" });
    } else if (key === "Index") {
      const [name, primary, , unique] = items;
      table.indexes.push({ name, isPrimary: isTrue(primary), isUnique: isTrue(unique), fields: [] });
    } else if (key === "IndexField") {
      table.indexes.at(-1).fields.push(items[0]);
    }
  }
  return table;
}

// Tables, relations and programs that the structure files (their paths) ask for.
export function expectedOf(files) {
  const expected = { tables: new Map(), relations: [], programs: [] };
  for (const file of files) {
    const sections = readSections(file);
    const header = Object.fromEntries(sections.get("HEADER"));
    expected.programs.push({ Indprg: header.Symbol, Nazwa: header.Program,
                             VerMajor: Number(header.VerMajor), VerMinor: Number(header.VerMinor) });
    for (const [name] of sections.get("TABLES")) {
      if (!expected.tables.has(name)) expected.tables.set(name, readTable(sections.get(name)));
    }
    for (const [name, value] of sections.get("RELATIONS")) {
      const [table, foreignTable, attributes] = value.split(",");
      expected.relations.push({ table, foreignTable, attributes: Number(attributes),
                                fields: sections.get(name).map(([, pair]) => pair.split(",")) });
    }
  }
  return expected;
}

// --- mdb-reader -----------------------------------------------------------------------------------

const readerTypes = { 1: "boolean", 2: "byte", 3: "integer", 4: "long", 5: "currency", 6: "float",
                      7: "double", 8: "datetime", 9: "binary", 10: "text", 11: "ole", 12: "memo",
                      15: "repid" };
const fixedSizes = { 1: 0, 2: 1, 3: 2, 4: 4, 5: 8, 6: 4, 7: 8, 8: 8, 11: 0, 12: 0, 15: 16 };

function checkWithMdbReader(reader, expected) {
  same("mdb-reader: tables", reader.getTableNames().sort(), [...expected.tables.keys()].sort());
  for (const [name, table] of expected.tables) {
    const columns = reader.getTable(name).getColumns();
    same(`mdb-reader: columns of ${name}`,
         columns.map((c) => [c.name, c.type, c.size, c.autoLong]),
         table.fields.map((f) => [f.name, readerTypes[f.type],
                                  fixedSizes[f.type] ?? (f.type === 10 ? 2 * f.size : f.size),
                                  f.isCounter]));
  }
  same("dbprg", reader.getTable("dbprg").getData(), expected.programs);
}

// --- mdbtools -------------------------------------------------------------------------------------

const schemaTypes = { 1: "BOOLEAN", 2: "SMALLINT", 3: "INTEGER", 4: "INTEGER", 5: "NUMERIC(15,2)",
                      6: "REAL", 7: "DOUBLE PRECISION", 8: "TIMESTAMP WITHOUT TIME ZONE",
                      9: "BYTEA", 11: "BYTEA", 12: "TEXT", 15: "UUID" };

// A column as mdb-schema prints it for PostgreSQL, in lower case but for the type.
function schemaColumn(field) {
  if (field.isCounter) return `"${field.name.toLowerCase()}" SERIAL`;
  const type = field.type === 10 ? `VARCHAR (${field.size})` : schemaTypes[field.type];
  // It shows every Boolean as NOT NULL.
  const notNull = field.required || field.type === 1 ? " NOT NULL" : "";
  const value = field.defaultValue.replace(/^"(.*)"$/, "'$1'");
  return `"${field.name.toLowerCase()}" ${type}${notNull}${value ? ` DEFAULT ${value}` : ""}`;
}

const listOf = (names) => names.map((name) => `"${name.toLowerCase()}"`).join(", ");

function schemaIndex(table, index) {
  const low = table.toLowerCase();
  if (index.isPrimary) {
    return `ALTER TABLE "${low}" ADD CONSTRAINT "${low}_pkey" PRIMARY KEY (${listOf(index.fields)});`;
  }
  const unique = index.isUnique ? "UNIQUE " : "";
  return `CREATE ${unique}INDEX "${low}_${index.name.toLowerCase()}_idx" ON "${low}" (${listOf(index.fields)});`;
}

function schemaRelation({ table, foreignTable, attributes, fields }) {
  return fields.map(([name, foreignName]) => {
    const [own, other] = [foreignName.toLowerCase(), name.toLowerCase()];
    if (attributes & 2) {
      return `-- Relationship from "${foreignTable}" ("${own}") to "${table}"("${other}") does not enforce integrity.`;
    }
    const cascades = (attributes & 256 ? " ON UPDATE CASCADE" : "") +
                     (attributes & 4096 ? " ON DELETE CASCADE" : "");
    return `ALTER TABLE "${foreignTable}" ADD CONSTRAINT "${foreignTable.toLowerCase()}_${own}_fk" ` +
           `FOREIGN KEY ("${own}") REFERENCES "${table}"("${other}")${cascades} ` +
           `DEFERRABLE INITIALLY IMMEDIATE;`;
  });
}

function checkWithMdbtools(database, expected) {
  same("mdb-ver", run("mdb-ver", [database]).trim(), "JET4");
  const names = [...expected.tables.keys()];
  same("mdb-tables", run("mdb-tables", ["-1", database]).trim().split("\n").sort(), names.sort());
  const schema = run("mdb-schema", ["--indexes", "--relations", "--default-values", "--not-null",
                                    database, "postgres"]);
  const blocks = new Map();
  for (const block of schema.split("CREATE TABLE IF NOT EXISTS ").slice(1)) {
    const [head, ...rest] = block.split("\n");
    blocks.set(head.trim().replaceAll('"', ""), rest);
  }
  for (const [name, table] of expected.tables) {
    const lines = blocks.get(name.toLowerCase()) ?? [];
    const columns = lines.filter((line) => line.startsWith("\t"))
                         .map((line) => line.trim().replace(/,$/, "").trim().replace(/\t+/, " "));
    same(`mdb-schema: columns of ${name}`, columns, table.fields.map(schemaColumn));
    const isIndex = (line) => /^CREATE (UNIQUE )?INDEX|PRIMARY KEY/.test(line);
    same(`mdb-schema: indexes of ${name}`, lines.filter(isIndex).sort(),
         table.indexes.map((index) => schemaIndex(name, index)).sort());
    const header = run("mdb-export", [database, name]).split("\n")[0];
    same(`mdb-export ${name}`, header, table.fields.map((field) => field.name).join(","));
  }
  const isRelation = (line) => /^-- Relationship from|FOREIGN KEY/.test(line);
  same("mdb-schema: relationships", schema.split("\n").filter(isRelation).sort(),
       expected.relations.flatMap(schemaRelation).sort());
}

// The reader is mdb-reader's, opened on the database.
export function checkStructure(reader, database, expected) {
  checkWithMdbReader(reader, expected);
  checkWithMdbtools(database, expected);
}
