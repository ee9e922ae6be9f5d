// jetcheck: verifies database files, a line for each fault.
#include <algorithm>
#include <string>
#include <vector>

#include "jet/check/check.h"
#include "platform/run_time_error.h"
#include "platform/system.h"
#include "platform/text.h"

namespace {

using zimbrat::jet::CheckFile;
using zimbrat::jet::CheckOptions;
using zimbrat::jet::Fault;
using zimbrat::jet::HasErrors;
using zimbrat::jet::KeyCounts;
using zimbrat::platform::DecimalText;

enum Status { kSound = 0, kFaults = 1, kCannotOpen = 2 };

constexpr const char16_t* kHelp =
    u"Użycie: jetcheck [--klucze] [--nieuzywane] PLIK...\n"
    u"\n"
    u"Sprawdza każdą stronę, mapę, definicję, wiersz i wpis indeksu baz danych Jet 4 (.mdb).\n"
    u"Pliki nie są zmieniane. Każdy błąd to jeden wiersz: plik, miejsce, opis; ostrzeżenia\n"
    u"zaczynają się od „uwaga”.\n"
    u"\n"
    u"  --klucze      na koniec: ile kluczy indeksów odtworzono z wierszy bajt w bajt, według "
    u"typu\n"
    u"  --nieuzywane  ostrzega też o stronach, mapach i długich wartościach, których nic nie "
    u"używa\n"
    u"  --help, --pomoc\n"
    u"\n"
    u"Stan wyjścia: 0 pliki bez błędów, 1 są błędy, 2 pliku nie da się otworzyć albo złe użycie.\n";

class JetCheck {
 public:
  explicit JetCheck(zimbrat::platform::System& system) : system_(system) {}

  int Run();

 private:
  Status CheckOne(const std::u16string& path);
  void WriteKeys();

  zimbrat::platform::System& system_;
  KeyCounts keys_;
  bool wantsKeys_ = false;
  bool wantsUnused_ = false;
};

Status JetCheck::CheckOne(const std::u16string& path) {
  try {
    CheckOptions options;
    if (wantsKeys_) options.keyCounts = &keys_;
    options.reportUnused = wantsUnused_;
    const std::vector<Fault> faults = CheckFile(*system_.files, path, options);
    for (const Fault& fault : faults) {
      system_.console->WriteOutput(path + (fault.isError ? u": " : u": uwaga: ") + fault.place +
                                   u": " + fault.text + u"\n");
    }
    return HasErrors(faults) ? kFaults : kSound;
  } catch (const std::exception&) {
    const auto error = zimbrat::platform::CurrentRunTimeError();
    system_.console->WriteError(path + u": " + error.Description() + u"\n");
    return kCannotOpen;
  }
}

void JetCheck::WriteKeys() {
  constexpr const char16_t* kTypes[] = {u"?",        u"Boolean", u"Byte",   u"Integer", u"Long",
                                        u"Currency", u"Single",  u"Double", u"Date",    u"Binary",
                                        u"Text",     u"OLE",     u"Memo",   u"?",       u"?",
                                        u"GUID",     u"Decimal"};
  for (const auto& [kind, count] : keys_) {
    const auto& [type, isAscending] = kind;
    system_.console->WriteOutput(std::u16string(kTypes[std::clamp<int>(type, 0, 16)]) +
                                 (isAscending ? u" rosnąco: " : u" malejąco: ") +
                                 DecimalText(static_cast<long long>(count.equal)) + u" z " +
                                 DecimalText(static_cast<long long>(count.keys)) + u"\n");
  }
}

int JetCheck::Run() {
  std::vector<std::u16string> paths;
  for (const std::u16string& word : system_.console->Arguments()) {
    if (word == u"--help" || word == u"--pomoc") {
      system_.console->WriteOutput(kHelp);
      return kSound;
    }
    if (word == u"--klucze") {
      wantsKeys_ = true;
    } else if (word == u"--nieuzywane") {
      wantsUnused_ = true;
    } else {
      paths.push_back(word);
    }
  }
  const bool isMisused =
      paths.empty() || std::any_of(paths.begin(), paths.end(), [](const std::u16string& path) {
        return path.starts_with(u"--");
      });
  if (isMisused) {
    system_.console->WriteError(kHelp);
    return kCannotOpen;
  }
  Status worst = kSound;
  for (const std::u16string& path : paths) worst = std::max(worst, CheckOne(path));
  WriteKeys();
  return worst;
}

}  // namespace

int main(int argc, char** argv) {
  zimbrat::platform::System system = zimbrat::platform::MakeSystem(argc, argv);
  return JetCheck(system).Run();
}
