// The example structure files against the rules of their format, and against each other: any choice
// of them, in any order, must give a database.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "generator/ModGeneruj.h"
#include "platform/numbers.h"
#include "suite/ModPrgFun.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

constexpr std::size_t kLongestSection = 2046;

struct Table {
  std::map<std::u16string, generator::FieldLine> fields;
  std::vector<std::vector<std::u16string>> uniqueKeys;
  std::set<std::u16string> indexNames;
};

class ExampleProgram {
 public:
  ExampleProgram(Bench& bench, std::u16string name)
      : profile_(bench.profile),
        path_(platform::JoinPath(platform::Utf16FromUtf8(ZIMBRAT_STRUKTURY), name)) {
    for (const auto& line : Section(u"TABLES")) {
      EXPECT_TRUE(tables_.try_emplace(line.key, ReadTable(line.key)).second) << Utf8(line.key);
    }
  }

  std::vector<suite::SectionEntry> Section(std::u16string_view name) const {
    const auto entries = suite::ReadSection(profile_, name, path_);
    std::size_t length = 0;
    for (const auto& entry : entries) length += entry.key.size() + 1 + entry.value.size() + 1;
    EXPECT_LE(length, kLongestSection) << Utf8(name);
    EXPECT_FALSE(entries.empty()) << Utf8(path_) << " [" << Utf8(name) << "]";
    return entries;
  }

  const std::map<std::u16string, Table>& Tables() const { return tables_; }
  generator::StructureHeader Header() const {
    return generator::ReadStructureHeader(profile_, path_);
  }

 private:
  Table ReadTable(std::u16string_view name) const;

  platform::Profile& profile_;
  std::u16string path_;
  std::map<std::u16string, Table> tables_;
};

Table ExampleProgram::ReadTable(std::u16string_view name) const {
  Table table;
  std::vector<std::u16string>* key = nullptr;
  std::vector<std::u16string> plainKey;
  int counters = 0;
  for (const auto& line : Section(name)) {
    const std::string where = Utf8(name) + ": " + Utf8(line.value);
    if (line.key == u"Field") {
      generator::FieldLine field;
      generator::DecodeFieldLine(line.value, field);
      EXPECT_TRUE(table.fields.try_emplace(field.name, field).second) << where;
      EXPECT_NO_THROW(platform::BooleanFromText(field.required)) << where;
      EXPECT_NO_THROW(platform::BooleanFromText(field.allowZeroLength)) << where;
      const bool isCounter = platform::LongFromText(field.attributes) == 17;
      EXPECT_TRUE(!isCounter || field.type == u"4") << where;
      if (isCounter || field.type == u"11") {
        EXPECT_TRUE(field.defaultValue.empty() && field.validationText.empty()) << where;
      }
      counters += isCounter;
    } else if (line.key == u"Index") {
      generator::IndexLine index;
      generator::DecodeIndexLine(line.value, index);
      for (const auto& item : {index.primary, index.unique, index.required}) {
        EXPECT_NO_THROW(platform::BooleanFromText(item)) << where;
      }
      EXPECT_TRUE(table.indexNames.insert(platform::UpperCase(index.name)).second) << where;
      const bool isUnique = platform::BooleanFromText(index.unique);
      key = isUnique ? &table.uniqueKeys.emplace_back() : &plainKey;
    } else {
      std::u16string field;
      EXPECT_EQ(line.key, u"IndexField") << where;
      EXPECT_TRUE(generator::DecodeIndexFieldLine(line.value, field)) << where;
      EXPECT_TRUE(table.fields.contains(field)) << where;
      if (key == nullptr) {
        ADD_FAILURE() << where;
        continue;
      }
      key->push_back(field);
    }
  }
  EXPECT_LE(counters, 1) << Utf8(name);
  EXPECT_FALSE(table.uniqueKeys.empty()) << Utf8(name);
  return table;
}

void CheckRelation(const ExampleProgram& program, const suite::SectionEntry& line) {
  const std::string where = Utf8(line.key) + "=" + Utf8(line.value);
  generator::RelationLine relation;
  ASSERT_TRUE(generator::DecodeRelationLine(line.value, relation)) << where;
  EXPECT_TRUE(line.value.ends_with(u"," + relation.attributes)) << where;
  ASSERT_TRUE(program.Tables().contains(relation.table)) << where;
  ASSERT_TRUE(program.Tables().contains(relation.foreignTable)) << where;
  const Table& table = program.Tables().at(relation.table);
  const Table& foreign = program.Tables().at(relation.foreignTable);
  EXPECT_FALSE(foreign.indexNames.contains(platform::UpperCase(line.key))) << where;
  std::vector<std::u16string> key;
  for (const auto& field : program.Section(line.key)) {
    generator::RelationFieldLine decoded;
    generator::DecodeRelationFieldLine(field.value, decoded);
    ASSERT_TRUE(table.fields.contains(decoded.name)) << where;
    ASSERT_TRUE(foreign.fields.contains(decoded.foreignName)) << where;
    EXPECT_EQ(table.fields.at(decoded.name).type, foreign.fields.at(decoded.foreignName).type)
        << where;
    key.push_back(decoded.name);
  }
  EXPECT_NE(std::find(table.uniqueKeys.begin(), table.uniqueKeys.end(), key),
            table.uniqueKeys.end())
      << where << ": no unique index on exactly these fields";
}

class ExamplePrograms : public testing::TestWithParam<const char16_t*> {};

TEST_P(ExamplePrograms, KeepTheRulesOfTheFormat) {
  Bench bench;
  const ExampleProgram program(bench, GetParam());
  const auto relations = program.Section(u"RELATIONS");
  std::set<std::u16string> names;
  for (const auto& relation : relations) {
    EXPECT_TRUE(names.insert(platform::UpperCase(relation.key)).second) << Utf8(relation.key);
    CheckRelation(program, relation);
  }
  EXPECT_EQ(static_cast<std::size_t>(program.Header().tabCount), program.Tables().size());
  EXPECT_EQ(static_cast<std::size_t>(program.Header().relCount), relations.size());
}

TEST_P(ExamplePrograms, HaveAHistoryThatStaysWithinTheirVersion) {
  Bench bench;
  const ExampleProgram program(bench, GetParam());
  const int version = program.Header().verMajor * 10 + program.Header().verMinor;
  for (const char16_t* section : {u"UPGRADE", u"UPDATE"}) {
    int last = 0;
    for (const auto& line : program.Section(section)) {
      const double major = platform::Val(line.value.substr(0, line.value.find(u'.')));
      const double minor = platform::Val(line.value.substr(line.value.find(u'.') + 1, 1));
      const int introduced = static_cast<int>(major * 10 + minor);
      EXPECT_LE(last, introduced) << Utf8(line.value);
      EXPECT_LE(introduced, version) << Utf8(line.value);
      last = introduced;
    }
    EXPECT_EQ(last, version);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, ExamplePrograms,
                         testing::Values(u"faktury.stb", u"kadry.stb", u"magazyn.stb"),
                         [](const auto& row) {
                           return Utf8(std::u16string(row.param).substr(
                               0, std::u16string(row.param).find(u'.')));
                         });

TEST(ExampleProgramsTogether, AgreeOnWhatTheyShare) {
  Bench bench;
  std::map<std::u16string, std::string> shared;
  std::set<std::u16string> relations, types;
  for (const char16_t* name : {u"faktury.stb", u"kadry.stb", u"magazyn.stb"}) {
    const ExampleProgram program(bench, name);
    for (const char16_t* table : {u"dbprg", u"dboso", u"dbfir", u"dboko"}) {
      EXPECT_TRUE(program.Tables().contains(table)) << Utf8(name) << " " << Utf8(table);
    }
    for (const auto& [table, definition] : program.Tables()) {
      std::string text;
      for (const auto& line : program.Section(table)) {
        text += Utf8(line.key) + "=" + Utf8(line.value) + "\n";
      }
      EXPECT_EQ(shared.try_emplace(table, text).first->second, text) << Utf8(table);
      for (const auto& [field, items] : definition.fields) types.insert(items.type);
    }
    for (const auto& relation : program.Section(u"RELATIONS")) {
      EXPECT_TRUE(relations.insert(platform::UpperCase(relation.key)).second) << Utf8(relation.key);
    }
  }
  EXPECT_EQ(types.size(), 13u);
}

}  // namespace
}  // namespace zimbrat::tests
