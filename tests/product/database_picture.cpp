#include "tests/product/database_picture.h"

#include <algorithm>
#include <charconv>
#include <type_traits>

#include "platform/text.h"
#include "tests/support/error_of.h"

namespace zimbrat::tests {
namespace {

using Lines = std::vector<std::string>;

std::string HexOf(const std::byte* bytes, std::size_t count) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    const auto byte = std::to_integer<unsigned>(bytes[i]);
    text += {kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return text;
}

// The shortest text that gives the same number again.
template <class T>
std::string NumberText(T number) {
  char text[32];
  return {text, std::to_chars(std::begin(text), std::end(text), number).ptr};
}

std::string Quoted(std::u16string_view text) {
  return "\"" + platform::Utf8FromUtf16(text) + "\"";
}

std::string ValueText(dao::Null) { return "Null"; }
std::string ValueText(bool value) { return value ? "True" : "False"; }
std::string ValueText(std::uint8_t value) { return NumberText(int{value}) + " as Byte"; }
std::string ValueText(std::int16_t value) { return NumberText(value) + " as Integer"; }
std::string ValueText(std::int32_t value) { return NumberText(value) + " as Long"; }
std::string ValueText(dao::Currency value) { return NumberText(value.scaled) + " as Currency"; }
std::string ValueText(float value) { return NumberText(value) + " as Single"; }
std::string ValueText(double value) { return NumberText(value) + " as Double"; }
std::string ValueText(dao::Date value) { return NumberText(value.days) + " as Date"; }
std::string ValueText(const std::u16string& value) { return Quoted(value); }
std::string ValueText(const dao::Binary& value) { return HexOf(value.data(), value.size()) + " as Binary"; }
std::string ValueText(const dao::Guid& value) { return HexOf(value.bytes.data(), value.bytes.size()) + " as GUID"; }
std::string ValueText(const dao::Decimal& value) {
  std::string text = value.negative ? "-" : "";
  for (const std::uint32_t word : value.magnitude) text += NumberText(word) + ":";
  return text + NumberText(int{value.scale}) + " as Decimal";
}

std::string TextOf(const dao::Value& value) {
  return std::visit([](const auto& held) { return ValueText(held); }, value);
}
std::string TextOf(const std::u16string& text) { return Quoted(text); }
std::string TextOf(bool value) { return value ? "1" : "0"; }
template <class T>
requires std::is_integral_v<T>
std::string TextOf(T number) { return NumberText(number); }

// An object's kind, then one property after another.
class Line {
 public:
  explicit Line(std::string start) : text_(std::move(start)) {}

  template <class Object, class Result>
  Line& Add(const char* name, Object& object, Result (Object::*get)()) {
    text_ += std::string(" ") + name + "=";
    const std::int32_t error = ErrorOf([&] { text_ += TextOf((object.*get)()); });
    if (error != 0) text_ += "error " + NumberText(error);
    return *this;
  }
  const std::string& Text() const { return text_; }

 private:
  std::string text_;
};

template <class T, class Work>
void ForEach(dao::Collection<T>& collection, const Work& work) {
  const int count = collection.Count();
  for (int i = 0; i < count; ++i) work(*collection.Item(i));
}

// Blocks of lines, each in its own order, sorted by their first lines.
void AppendSorted(std::vector<Lines> blocks, Lines& lines) {
  std::ranges::sort(blocks);
  for (const Lines& block : blocks) lines.insert(lines.end(), block.begin(), block.end());
}

std::string FieldLine(dao::Field& field) {
  return Line("    field")
      .Add("Name", field, &dao::Field::Name)
      .Add("Type", field, &dao::Field::Type)
      .Add("Size", field, &dao::Field::Size)
      .Add("Attributes", field, &dao::Field::Attributes)
      .Add("Required", field, &dao::Field::Required)
      .Add("AllowZeroLength", field, &dao::Field::AllowZeroLength)
      .Add("DefaultValue", field, &dao::Field::DefaultValue)
      .Add("ValidationRule", field, &dao::Field::ValidationRule)
      .Add("ValidationText", field, &dao::Field::ValidationText)
      .Add("ForeignName", field, &dao::Field::ForeignName)
      .Add("Value", field, &dao::Field::Value)
      .Text();
}

Lines IndexLines(dao::Index& index) {
  Lines lines{Line("  index")
                  .Add("Name", index, &dao::Index::Name)
                  .Add("Primary", index, &dao::Index::Primary)
                  .Add("Unique", index, &dao::Index::Unique)
                  .Add("Required", index, &dao::Index::Required)
                  .Add("IgnoreNulls", index, &dao::Index::IgnoreNulls)
                  .Add("Foreign", index, &dao::Index::Foreign)
                  .Text()};
  ForEach(*index.Fields(), [&](dao::Field& field) { lines.push_back(FieldLine(field)); });
  return lines;
}

Lines RelationLines(dao::Relation& relation) {
  Lines lines{Line("relation")
                  .Add("Name", relation, &dao::Relation::Name)
                  .Add("Table", relation, &dao::Relation::Table)
                  .Add("ForeignTable", relation, &dao::Relation::ForeignTable)
                  .Add("Attributes", relation, &dao::Relation::Attributes)
                  .Text()};
  ForEach(*relation.Fields(), [&](dao::Field& field) { lines.push_back(FieldLine(field)); });
  return lines;
}

std::string RowLine(dao::Recordset& rows) {
  std::string line = "  row";
  ForEach(*rows.Fields(), [&](dao::Field& field) { line += " | " + TextOf(field.Value()); });
  return line;
}

Lines RowLines(dao::Database& database, const std::u16string& table) {
  Lines lines;
  const auto rows = database.OpenRecordset(u"SELECT * FROM [" + table + u"]");
  for (; !rows->EndOfFile(); rows->MoveNext()) lines.push_back(RowLine(*rows));
  rows->Close();
  std::ranges::sort(lines);
  return lines;
}

Lines TableLines(dao::Database& database, dao::TableDef& table) {
  Lines lines{Line("table")
                  .Add("Name", table, &dao::TableDef::Name)
                  .Add("Attributes", table, &dao::TableDef::Attributes)
                  .Add("Updatable", table, &dao::TableDef::Updatable)
                  .Add("RecordCount", table, &dao::TableDef::RecordCount)
                  .Text()};
  ForEach(*table.Fields(), [&](dao::Field& field) { lines.push_back("  " + FieldLine(field)); });
  std::vector<Lines> indexes;
  ForEach(*table.Indexes(), [&](dao::Index& index) { indexes.push_back(IndexLines(index)); });
  AppendSorted(std::move(indexes), lines);
  if ((table.Attributes() & dao::dbSystemObject) != 0) return lines;
  const Lines rows = RowLines(database, table.Name());
  lines.insert(lines.end(), rows.begin(), rows.end());
  return lines;
}

}  // namespace

Lines PictureOf(dao::Database& database) {
  Lines lines{Line("database")
                  .Add("Version", database, &dao::Database::Version)
                  .Add("Updatable", database, &dao::Database::Updatable)
                  .Text()};
  std::vector<Lines> tables;
  ForEach(*database.TableDefs(), [&](dao::TableDef& table) { tables.push_back(TableLines(database, table)); });
  AppendSorted(std::move(tables), lines);
  std::vector<Lines> relations;
  ForEach(*database.Relations(), [&](dao::Relation& relation) { relations.push_back(RelationLines(relation)); });
  AppendSorted(std::move(relations), lines);
  return lines;
}

Lines PictureOf(dao::Engine& engine, std::u16string_view path) {
  const auto workspace = engine.CreateWorkspace(u"", u"Admin", u"");
  const auto database = workspace->OpenDatabase(path, true, false);
  Lines lines = PictureOf(*database);
  database->Close();
  workspace->Close();
  return lines;
}

}  // namespace zimbrat::tests
