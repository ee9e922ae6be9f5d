#include "column_change.h"

#include <algorithm>

#include "jet/catalog/schema.h"
#include "jet/table/convert.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

// A name that no field of the table has.
std::u16string TemporaryName(const TableDefinition& definition) {
  std::u16string name = u"~TMP";
  while (definition.FindColumn(name)) name += u'~';
  return name;
}

std::vector<NewIndex> IndexesOver(const TableDefinition& definition, std::uint16_t columnId) {
  std::vector<NewIndex> indexes;
  for (const LogicalIndex& entry : definition.logicalIndexes) {
    const RealIndex& real = definition.realIndexes[entry.realIndex];
    const auto isOver = [&](const IndexColumn& part) { return part.columnId == columnId; };
    if (std::none_of(real.columns.begin(), real.columns.end(), isOver)) continue;
    NewIndex index;
    index.name = entry.name;
    index.primary = entry.kind == kIndexPrimary;
    index.unique = real.IsUnique();
    index.required = real.IsRequired();
    index.ignoreNulls = real.IgnoresNulls();
    for (const IndexColumn& part : real.columns) {
      index.fields.push_back({definition.columns[*definition.FindColumnById(part.columnId)].name, !part.ascending});
    }
    indexes.push_back(std::move(index));
  }
  return indexes;
}

void CopyValues(Table& table, std::uint16_t fromId, std::uint16_t toId) {
  const std::size_t from = *table.Definition().FindColumnById(fromId);
  const std::size_t to = *table.Definition().FindColumnById(toId);
  Column target = table.Definition().columns[to];
  target.name = table.Definition().columns[from].name;  // the one that an error names
  for (RowScan scan(table); scan.Next();) {
    const RowFields& former = scan.Fields();
    RowFields fields = former;
    fields[to] = table.FieldOf(to, ConvertToColumn(target, table.ValueOf(from, former[from])));
    table.Update(scan.Place(), former, table.Prepare(fields, &former));
  }
}

}  // namespace

void ChangeColumnType(DatabaseFile& database, Table& table, FieldSpec field) {
  Catalog& catalog = database.GetCatalog();
  Schema schema(database.GetStorage(), catalog);
  const std::size_t position = *table.Definition().FindColumn(field.name);
  const Column former = table.Definition().columns[position];
  const FieldRules rules = catalog.Rules(table)[position];
  const auto id = static_cast<std::int32_t>(table.Page());
  PropertyBlob properties = catalog.Properties(id);  // widths, captions and what else programs keep there
  const std::vector<NewIndex> indexes = IndexesOver(table.Definition(), former.id);
  for (const NewIndex& index : indexes) schema.DropIndex(table.Page(), index.name);
  field.name = TemporaryName(table.Definition());
  field.required = field.required || rules.required;
  if (former.IsText()) field.allowZeroLength = rules.allowZeroLength;
  if (!field.IsCounter()) field.defaultValue = rules.defaultValue;
  field.validationRule = rules.validationRule;
  field.validationText = rules.validationText;
  const std::uint16_t added = schema.AddField(table.Page(), field);
  CopyValues(table, former.id, added);
  schema.DropField(table.Page(), former.id);
  schema.RenameField(table.Page(), added, former.name);
  TableDesign design(database.GetStorage(), table.Page());
  design.definition.columns[*design.definition.FindColumnById(added)].displayOrder = former.displayOrder;
  design.Write();
  field.name = former.name;
  PutFieldProperties(field, properties);
  catalog.PutProperties(id, properties);
  catalog.DefinitionChanged(table.Page());
  for (const NewIndex& index : indexes) schema.AddIndex(table.Page(), index);
}

bool HasUniqueIndex(Table& table, const std::vector<std::u16string>& columns) {
  const TableDefinition& definition = table.Definition();
  return std::any_of(definition.realIndexes.begin(), definition.realIndexes.end(), [&](const RealIndex& index) {
    if (!index.IsUnique() || index.columns.size() != columns.size()) return false;
    return std::all_of(columns.begin(), columns.end(), [&](const std::u16string& name) {
      const std::uint16_t id = definition.columns[*definition.FindColumn(name)].id;
      return std::any_of(index.columns.begin(), index.columns.end(),
                         [&](const IndexColumn& part) { return part.columnId == id; });
    });
  });
}

}  // namespace zimbrat::jet
