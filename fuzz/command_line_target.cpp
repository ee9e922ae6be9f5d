// What a calling program, a shell or another program's lock file may hand over.
#include <string>
#include <vector>

#include "app/modMain.h"
#include "console/arguments.h"
#include "generator/ModGeneruj.h"
#include "jet/file/lock_file.h"
#include "suite/ModPrgFun.h"
#include "targets.h"
#include "tests/support/memory_files.h"
#include "text_input.h"

namespace zimbrat::fuzz {

namespace {

void SplitText(const std::u16string& text) {
  std::vector<std::u16string> tokens;
  int most = static_cast<int>(text.size() % 14) - 1;
  app::ParseCommandLine(text, tokens, most);
  std::u16string folder, name;
  suite::SplitPath(text, folder, name);
  for (const char16_t separator : {u',', u';'}) generator::SplitFileList(text, separator);
  console::SplitNames(text);
  console::FindMonthAndYear(text);
}

void ReadLockFile(Input input) {
  tests::MemoryFiles files;
  const auto bytes = std::as_bytes(input);
  files.BytesOf(u"/baza.ldb").assign(bytes.begin(), bytes.end());
  jet::FindDatabaseUser(files, u"/baza.mdb");
}

}  // namespace

// Words of the command line, a line each.
void ParseCommandLines(Input input) {
  ReadLockFile(input);
  SplitText(TextOf(input));
  std::vector<std::u16string> words;
  for (const Input line : SplitLines(input)) words.push_back(TextOf(line));
  const console::Arguments arguments = console::ParseArguments(words);
  arguments.Value(console::kPasswordOption);
}

}  // namespace zimbrat::fuzz
