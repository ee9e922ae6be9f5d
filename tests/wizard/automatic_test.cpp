// Zimbrat.exe as another program starts it: the outcome in the registry, no window whatever happens.
#include <gtest/gtest.h>

#include <windows.h>

#include <filesystem>
#include <memory>
#include <string>

#include "app/modMain.h"
#include "app/win32/program.h"
#include "app/win32/windows_host.h"
#include "platform/win32/handles.h"
#include "platform/win32/wide_text.h"
#include "platform/win32/win32_registry.h"
#include "suite/ModSysReg.h"
#include "tests/product/wizard_bench.h"

namespace zimbrat::tests {
namespace {

constexpr DWORD kPatience = 60'000;  // milliseconds that a run may take at most

BOOL CALLBACK CountOne(HWND window, LPARAM count) {
  wchar_t name[64] = {};
  ::GetClassNameW(window, name, 64);
  // The system's own helpers of a thread that has loaded the input library.
  const std::wstring_view type = name;
  if (type != L"IME" && type != L"MSCTFIME UI") ++*reinterpret_cast<int*>(count);
  return TRUE;
}

// One run of the program.
class Child {
 public:
  Child(const std::filesystem::path& program, const std::u16string& tail) {
    std::wstring line = L"\"" + program.wstring() + L"\" " + reinterpret_cast<const wchar_t*>(tail.c_str());
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION made = {};
    EXPECT_TRUE(::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr,
                                 nullptr, &start, &made));
    process_ = platform::ObjectHandle(made.hProcess);
    thread_ = platform::ObjectHandle(made.hThread);
    threadId_ = made.dwThreadId;
  }

  // Whether it ended within that many milliseconds, and how many windows it had meanwhile.
  bool Ends(DWORD milliseconds) {
    const ULONGLONG end = ::GetTickCount64() + milliseconds;
    while (::WaitForSingleObject(process_.Get(), 1) == WAIT_TIMEOUT) {
      ::EnumThreadWindows(threadId_, CountOne, reinterpret_cast<LPARAM>(&windows_));
      if (::GetTickCount64() > end) return false;
    }
    return true;
  }
  int Windows() const { return windows_; }
  void Kill() {
    ::TerminateProcess(process_.Get(), 1);
    ::WaitForSingleObject(process_.Get(), kPatience);
  }

 private:
  platform::ObjectHandle process_, thread_;
  DWORD threadId_ = 0;
  int windows_ = 0;
};

// The program in a folder of its own, with a structure file and a database of it.
class StartedByAProgram : public testing::Test {
 protected:
  void SetUp() override {
    const std::filesystem::path here = std::filesystem::path(bench_.PathOf(u"Mój zimbrat"));
    std::filesystem::create_directories(here);
    program_ = here / L"Zimbrat.exe";
    std::filesystem::copy_file(ZIMBRAT_PROGRAM, program_);
    bench_.WriteStructure(u"Mój zimbrat/ab.stb", SmallProgram("AB"));
    platform::ProgressBar bar;
    ASSERT_TRUE(generator::GenerujNowaBaze(bench_.state, bench_.folder.Path(), u"Płace",
                                           bench_.PathOf(u"Mój zimbrat/ab.stb"), {1, 2025, 1, 2025},
                                           bar));
    // Newer than the database, so that a run has something to do.
    std::string newer = SmallProgram("AB");
    bench_.WriteStructure(u"Mój zimbrat/ab.stb", newer.replace(newer.find("VerMinor=3"), 10, "VerMinor=4"));
    suite::RegStringSave(registry_, ListKey(), u"Folder", Database());
    SetStatus(u"-");
  }
  void TearDown() override {
    ::RegDeleteTreeW(HKEY_CURRENT_USER, platform::Lend(ListKey()));
  }

  std::u16string ListedName() const { return u"Zimbrat próba " + platform::DecimalText(::GetCurrentProcessId()); }
  std::u16string ListKey() const { return std::u16string(suite::kDatabaseListKey) + u"\\" + ListedName(); }
  std::u16string Database() const { return bench_.PathOf(u"Płace.mdb"); }
  void SetStatus(std::u16string_view status) {
    suite::RegStringSave(registry_, suite::kWizardKey, app::kStatusValue, status);
  }
  std::string Status() {
    return Utf8(suite::RegStringRead(registry_, suite::kWizardKey, app::kStatusValue, u""));
  }
  std::string Run(const std::u16string& tail) {
    SetStatus(u"-");
    Child child(program_, tail);
    if (!child.Ends(kPatience)) {
      child.Kill();
      ADD_FAILURE() << "did not end: " << Utf8(tail);
    }
    EXPECT_EQ(child.Windows(), 0) << Utf8(tail);
    return Status();
  }

  DatabaseBench bench_;
  platform::Win32Registry registry_;
  std::filesystem::path program_;
};

TEST_F(StartedByAProgram, LeavesItsOutcomeInTheRegistry) {
  const std::pair<std::u16string, const char*> rows[] = {
      {u"auto|" + ListedName(), "Ok"},
      {u"auto|" + Database(), "Ok"},
      {u"auto\t" + Database() + u"|3|4|5|6|7|8|9|10|11", "Ok"},
      {u"auto|" + bench_.PathOf(u"brak.mdb"), "Error"},
      {u"auto", "Error"},
      {u"auto||" + Database(), "Error"},
      {u"||" + Database(), "-"},
      {u"/?", "Error"}};
  for (const auto& [tail, status] : rows) EXPECT_EQ(Run(tail), status) << Utf8(tail);
}

TEST_F(StartedByAProgram, AsksForNoPassword) {
  dao::Database& database = bench_.Open(u"Płace.mdb");
  database.NewPassword(u"", u"tajne");
  bench_.Close();
  EXPECT_EQ(Run(u"auto|" + Database()), "Error");
}

// Enough rows for the run to take a while, in the middle of which it is killed.
TEST_F(StartedByAProgram, StaysAtStartWhenKilledAndEndsTheNextTime) {
  constexpr int kRows = 50'000;
  const auto rows = bench_.Open(u"Płace.mdb").OpenRecordset(u"ABDok", dao::dbOpenTable);
  for (int i = 0; i < kRows; ++i) {
    rows->AddNew();
    rows->Fields()->Item(u"Numer")->SetValue(u"F/" + platform::DecimalText(i));
    rows->Update();
  }
  rows->Close();
  bench_.Close();
  std::string newer = SmallProgram("AB", "[UPDATE]\nEXECUTE=1.4,UPDATE ABDok SET Numer = 'x' & Numer\n");
  bench_.WriteStructure(u"Mój zimbrat/ab.stb", newer.replace(newer.find("VerMinor=3"), 10, "VerMinor=4"));
  const std::string former = bench_.folder.Read(u"Płace.mdb");
  SetStatus(u"-");
  Child child(program_, u"auto|" + Database());
  for (int i = 0; i < 10'000 && Status() == "-"; ++i) child.Ends(0);
  child.Kill();
  EXPECT_EQ(Status(), "start");
  EXPECT_EQ(bench_.folder.Read(u"Płace.mdb"), former);
  EXPECT_EQ(Run(u"auto|" + Database()), "Ok");
  EXPECT_NE(bench_.folder.Read(u"Płace.mdb"), former);
}

// Counts the windows that this thread makes, of whatever kind.
class WindowCount {
 public:
  WindowCount() { Made() = 0; }
  ~WindowCount() { ::UnhookWindowsHookEx(hook_); }
  WindowCount(const WindowCount&) = delete;
  WindowCount& operator=(const WindowCount&) = delete;

  static int& Made() {
    constinit static thread_local int made = 0;
    return made;
  }

 private:
  static LRESULT CALLBACK Hook(int code, WPARAM wParam, LPARAM lParam) {
    if (code == HCBT_CREATEWND) ++Made();
    return ::CallNextHookEx(nullptr, code, wParam, lParam);
  }

  HHOOK hook_ = ::SetWindowsHookExW(WH_CBT, Hook, nullptr, ::GetCurrentThreadId());
};

TEST(AutomaticRunInWindows, MakesNoWindow) {
  DatabaseBench bench;
  bench.environment.programFolder = bench.folder.Path();
  const std::u16string file = bench.WriteStructure(u"AB.stb", SmallProgram("AB"));
  platform::ProgressBar bar;
  ASSERT_TRUE(generator::GenerujNowaBaze(bench.state, bench.folder.Path(), u"Firma", file,
                                         {1, 2025, 1, 2025}, bar));
  for (const std::u16string_view database : {u"Firma.mdb", u"brak.mdb"}) {
    platform::Automation automation;
    platform::Mapi mapi;
    platform::Shell shell;
    const errors::Outside outside{shell, automation, mapi, [] { ADD_FAILURE(); }};
    app::WindowsHost windows([](std::u16string_view, std::u16string_view) {}, bench.state, outside);
    WizardProgram program(bench, windows);
    const WindowCount count;
    app::Main(program.state, program.form, u"auto|" + bench.PathOf(database), [] { ADD_FAILURE(); });
    EXPECT_EQ(WindowCount::Made(), 0) << Utf8(database);
    EXPECT_EQ(program.form.akt_plansza, database == u"Firma.mdb" ? u"Koniec" : u"NazwaBazy");
  }
  const WindowCount count;
  ::DestroyWindow(::CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr,
                                    nullptr, nullptr));
  EXPECT_GT(WindowCount::Made(), 0) << "the count counts";
}

TEST(CommandLineOfTheProcess, IsWhatStandsBehindTheProgramsName) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"Zimbrat.exe", u""},
      {u"Zimbrat.exe  auto|x y ", u"auto|x y "},
      {u"\"C:\\Program Files\\Zimbrat.exe\" auto|x", u"auto|x"},
      {u"\"C:\\Program Files\\Zimbrat.exe\"", u""},
      {u"\"C:\\a b.exe\" \t\tx", u"\t\tx"},
      {u"\"bez końca", u""},
      {u"Zimbrat.exe\t\tx", u"\t\tx"},
      {u"", u""}};
  for (const auto& [whole, tail] : rows) EXPECT_EQ(Utf8(app::TailOf(whole)), Utf8(tail)) << Utf8(whole);
}

}  // namespace
}  // namespace zimbrat::tests
