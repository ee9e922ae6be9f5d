// The statements of tests/sql/*.test, each file on a database of its own.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "jet/check/check.h"
#include "jet/engine.h"
#include "jet/sql/expression.h"
#include "jet/table/convert.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/text.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

namespace {

class Script {
 public:
  Script() {
    database_ = workspace_->CreateDatabase(folder_.PathOf(u"sql.mdb"), dao::dbLangGeneral, 0);
    CreateTable(u"T", {{u"Id", dao::dbLong, 4, 17},
                       {u"A", dao::dbText, 20, 2},
                       {u"N", dao::dbLong, 4, 1},
                       {u"W", dao::dbCurrency, 8, 1},
                       {u"D", dao::dbDate, 8, 1},
                       {u"Z", dao::dbBoolean, 1, 1},
                       {u"M", dao::dbMemo, 0, 2}});
    CreateTable(u"K", {{u"B", dao::dbByte, 1, 1},
                       {u"I", dao::dbInteger, 2, 1},
                       {u"S", dao::dbSingle, 4, 1},
                       {u"F", dao::dbDouble, 8, 1},
                       {u"G", dao::dbGUID, 16, 1},
                       {u"X", dao::dbBinary, 4, 1}});
  }

  std::shared_ptr<dao::Field> FieldOfT(std::u16string_view name) {
    return database_->TableDefs()->Item(u"T")->Fields()->Item(name);
  }

  // What the line comes to: rows, a value, columns, or "! number".
  std::vector<std::string> Run(char kind, const std::string& text) {
    try {
      const std::u16string statement = platform::Utf16FromUtf8(text);
      if (kind == '?') return Rows(statement);
      if (kind == '=') return {Text(ValueOf(statement))};
      if (kind == ':') return {Columns(statement)};
      database_->Execute(statement, kind == '~' ? 0 : dao::dbFailOnError);
      if (kind != '>') return {std::to_string(database_->RecordsAffected())};
      return {};
    } catch (const platform::RunTimeError& error) {
      return {"! " + std::to_string(error.Number())};
    }
  }

  // What the checker finds in the file afterwards; pages that nothing refers to count too.
  std::vector<std::string> CloseAndCheck() {
    database_->Close();
    CheckOptions options;
    options.reportUnused = true;
    std::vector<std::string> faults;
    for (const Fault& fault : CheckFile(*system_.files, folder_.PathOf(u"sql.mdb"), options)) {
      faults.push_back(platform::Utf8FromUtf16(fault.place + u": " + fault.text));
    }
    return faults;
  }

 private:
  struct FieldRow {
    std::u16string_view name;
    int type, size, attributes;
  };

  void CreateTable(std::u16string_view name, const std::vector<FieldRow>& fields) {
    auto table = database_->CreateTableDef(name);
    for (const FieldRow& row : fields) {
      auto field = table->CreateField(row.name, std::int32_t{row.type}, std::int32_t{row.size});
      table->Fields()->Append(field);
      field->SetAttributes(row.attributes);
    }
    database_->TableDefs()->Append(table);
  }

  static std::string Text(const dao::Value& value) {
    return dao::IsNull(value) ? "-" : platform::Utf8FromUtf16(TextOfValue(value));
  }

  dao::Value ValueOf(std::u16string_view text) {
    const ExpressionPtr expression = ParseExpressionText(text);
    std::vector<std::u16string> unknown;
    BindNames(*expression, [](auto, auto) { return std::nullopt; }, unknown);
    if (!unknown.empty()) throw platform::OwnError(platform::kErrTooFewParameters);
    return Evaluate(*expression, {clock_.Now(), {}});
  }

  // Names, types and sizes.
  std::string Columns(std::u16string_view query) {
    std::string line;
    auto rows = database_->OpenRecordset(query, dao::dbOpenSnapshot);
    auto fields = rows->Fields();
    for (int i = 0; i < fields->Count(); ++i) {
      auto field = fields->Item(i);
      if (i > 0) line += '|';
      line += platform::Utf8FromUtf16(field->Name()) + ' ' + std::to_string(field->Type()) + ' ' +
              std::to_string(field->Size());
    }
    return line;
  }

  std::vector<std::string> Rows(std::u16string_view query) {
    std::vector<std::string> lines;
    auto rows = database_->OpenRecordset(query, dao::dbOpenSnapshot);
    for (; !rows->EndOfFile(); rows->MoveNext()) {
      std::string line;
      for (int i = 0; i < rows->Fields()->Count(); ++i) {
        if (i > 0) line += '|';
        line += Text(rows->Fields()->Item(i)->Value());
      }
      lines.push_back(line);
    }
    return lines;
  }

  tests::TempFolder folder_;
  tests::FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> engine_ = MakeEngine(*system_.files, clock_, {});
  std::shared_ptr<dao::Workspace> workspace_ = engine_->CreateWorkspace(u"", u"Admin", u"");
  std::shared_ptr<dao::Database> database_;
};

struct Case {
  int line = 0;
  char kind = 0;
  std::string text;
  std::vector<std::string> expected;
};

std::vector<Case> ReadCases(const std::filesystem::path& path) {
  std::vector<Case> cases;
  std::ifstream in(path, std::ios::binary);
  std::string line;
  for (int number = 1; std::getline(in, line); ++number) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const bool starts = !line.empty() && std::string_view(">+~?=:").find(line[0]) != std::string_view::npos;
    if (starts) {
      cases.push_back({number, line[0], line.size() > 2 ? line.substr(2) : "", {}});
    } else if (!line.empty() && line[0] != '#' && !cases.empty()) {
      cases.back().expected.push_back(line);
    }
  }
  return cases;
}

}  // namespace

TEST(Sql, StatementsDoWhatTheirCasesSay) {
  std::size_t count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(SQL_CASES)) {
    if (entry.path().extension() != ".test") continue;
    Script script;
    for (const Case& c : ReadCases(entry.path())) {
      EXPECT_EQ(script.Run(c.kind, c.text), c.expected) << entry.path().filename() << ":" << c.line << " " << c.text;
      ++count;
    }
    EXPECT_EQ(script.CloseAndCheck(), std::vector<std::string>{}) << entry.path().filename();
  }
  EXPECT_GT(count, 80u);
}

TEST(Sql, RulesOfAFieldMayLeaveItOut) {
  const struct {
    std::u16string_view rule;
    const char* allowed;
    const char* refused;
  } rows[] = {
      {u">0", "1", "0"},
      {u">0 And <10", "9", "10"},
      {u"= 5", "5", "6"},
      {u"(<0 Or >9)", "-1", "0"},
      {u"Between 1 And 3", "3", "4"},
      {u"Not Between 1 And 3", "4", "3"},
      {u"In (1, 2)", "2", "3"},
      {u"Is Not Null And <> 7", "8", "7"},
      {u"([N]>0) Or [N] Is Null", "1", "0"},
      {u"[N] Not In (1, 2)", "3", "2"},
      {u"Like '1*'", "12", "21"},
      {u"IIf(Len([N]) > 1, [N] Mod 2 = 0, True)", "12", "13"},
  };
  Script script;
  for (const auto& row : rows) {
    script.FieldOfT(u"N")->SetValidationRule(row.rule);
    const auto insert = [&](const char* value) {
      return script.Run('>', std::string("INSERT INTO T (N) VALUES (") + value + ")");
    };
    EXPECT_EQ(insert(row.allowed), std::vector<std::string>{}) << platform::Utf8FromUtf16(row.rule);
    EXPECT_EQ(insert(row.refused), std::vector<std::string>{"! 3317"}) << platform::Utf8FromUtf16(row.rule);
  }
}

TEST(Sql, HostileStatementsEndInAnError) {
  Script script;
  for (const char* piece : {"(", "NOT ", "-", "1+", "a.", "[", "'", "#", "IIf(", "1^", "& ", "1 AND ", "\xFF"}) {
    std::string text = "SELECT * FROM T WHERE ";
    for (int i = 0; i < 20'000; ++i) text += piece;
    EXPECT_LE(script.Run('?', text).size(), 1u) << piece;
  }
}

}  // namespace zimbrat::jet
