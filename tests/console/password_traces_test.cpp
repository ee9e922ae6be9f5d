// A password that zimbratc was given stands in no memory, output or file once the command has ended.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include "console/run.h"
#include "jet/engine.h"
#include "fake_console.h"
#include "memory_scan.h"
#include "platform/portable/posix_console.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

platform::Secret Unmasked(MaskedText masked) {
  platform::Secret plain;
  for (const char16_t unit : masked) {
    const char16_t one = unit ^ kTextMask;
    plain.Append({&one, 1});
  }
  return plain;
}

// Standard input as a terminal on which the password is typed once the prompt is shown.
class TypingConsole : public platform::PosixConsole {
 public:
  explicit TypingConsole(MaskedText password)
      : PosixConsole(0, nullptr),
        password_(password),
        keyboard_(::posix_openpt(O_RDWR | O_NOCTTY)),
        formerInput_(::dup(STDIN_FILENO)) {
    EXPECT_EQ(::grantpt(keyboard_), 0);
    EXPECT_EQ(::unlockpt(keyboard_), 0);
    const int terminal = ::open(::ptsname(keyboard_), O_RDWR | O_NOCTTY);
    EXPECT_GE(::dup2(terminal, STDIN_FILENO), 0);
    ::close(terminal);
  }
  ~TypingConsole() override {
    ::dup2(formerInput_, STDIN_FILENO);
    ::close(formerInput_);
    ::close(keyboard_);
  }
  TypingConsole(const TypingConsole&) = delete;
  TypingConsole& operator=(const TypingConsole&) = delete;

  void WriteError(std::u16string_view text) override {
    if (!text.ends_with(u": ")) return;
    for (const char16_t unit : password_) {
      const char16_t one = unit ^ kTextMask;
      Type(Utf8({&one, 1}));
    }
    Type("\n");
  }

 private:
  void Type(const std::string& bytes) {
    EXPECT_EQ(::write(keyboard_, bytes.data(), bytes.size()), static_cast<ssize_t>(bytes.size()));
  }

  MaskedText password_;
  int keyboard_;
  int formerInput_;
};

enum class Way { NextWord, SameWord, Variable, Prompt };

class PasswordConsole : public FakeConsole {
 public:
  PasswordConsole(Way way, MaskedText password) : way_(way), password_(password) {}

  std::vector<std::u16string> Arguments() override {
    std::vector<std::u16string> all;
    all.reserve(words.size() + 2);
    for (const std::u16string& word : words) all.push_back(word);
    if (way_ == Way::NextWord) all.emplace_back(u"--haslo");
    if (way_ == Way::NextWord) all.emplace_back();
    if (way_ == Way::SameWord) all.emplace_back(u"--haslo=");
    if (way_ <= Way::SameWord) AppendUnmasked(password_, all.back());
    return all;
  }
  std::optional<platform::Secret> AskPassword(std::u16string_view prompt) override {
    ++passwordsAsked;
    if (way_ != Way::Prompt) return std::nullopt;
    return TypingConsole(password_).AskPassword(prompt);
  }

 private:
  Way way_;
  MaskedText password_;
};

class PasswordEnvironment : public FakeEnvironment {
 public:
  MaskedText password;

  std::u16string Variable(std::u16string_view name) override {
    std::u16string value;
    if (name == u"ZIMBRAT_HASLO") AppendUnmasked(password, value);
    return value;
  }
};

class PasswordTraces : public testing::Test {
 protected:
  int Run(std::unique_ptr<FakeConsole> terminal, MaskedText variable = {}) {
    platform::System system = platform::MakeSystem(0, nullptr);
    FakeConsole& console = *terminal;
    system.console = std::move(terminal);
    auto environment = std::make_unique<PasswordEnvironment>();
    environment->programFolder = folder_.PathOf(u"program");
    environment->password = variable;
    system.environment = std::move(environment);
    system.registry = std::make_unique<platform::PortableRegistry>(
        *system.files, folder_.PathOf(u"rejestr.reg"));
    const int status = console::Run(system);
    output_ = Utf8(console.output) + Utf8(console.error);
    hidden_ = console.hiddenWords;
    return status;
  }
  int Stan(Way way, MaskedText password) {
    auto console = std::make_unique<PasswordConsole>(way, password);
    console->words = {u"stan", u"--json", u"--baza", folder_.PathOf(u"Firma.mdb"),
                      u"--folder-struktur", platform::Utf16FromUtf8(ZIMBRAT_STRUKTURY)};
    return Run(std::move(console), way == Way::Variable ? password : MaskedText());
  }
  void MakeDatabase() {
    auto console = std::make_unique<FakeConsole>();
    console->words = {u"nowa", u"--nadpisz", u"--folder", folder_.Path(), u"--nazwa", u"Firma",
                      u"--struktury", platform::JoinPath(platform::Utf16FromUtf8(ZIMBRAT_STRUKTURY),
                                                         u"magazyn.stb")};
    ASSERT_EQ(Run(std::move(console)), 0) << output_;
  }
  void ChangePassword(MaskedText from, MaskedText to) {
    const platform::System system = platform::MakeSystem(0, nullptr);
    const auto engine = jet::MakeEngine(*system.files, *system.clock, {});
    const auto workspace = engine->CreateWorkspace(u"", u"Admin", u"");
    platform::Secret connect(u";pwd=");
    connect.Append(Unmasked(from));
    const auto database =
        workspace->OpenDatabase(folder_.PathOf(u"Firma.mdb"), true, false, connect);
    database->NewPassword(Unmasked(from), Unmasked(to));
    database->Close();
    workspace->Close();
  }
  void ExpectNoTraces(MaskedText password) const {
    EXPECT_EQ(CountIn(output_, password), 0) << output_;
    for (const std::u16string& name : folder_.Names()) {
      EXPECT_EQ(CountIn(folder_.Read(name), password), 0) << Utf8(name);
    }
    EXPECT_EQ(CountInMemory(password), 0);
  }

  TempFolder folder_;
  std::string output_;
  std::vector<std::size_t> hidden_;
};

TEST_F(PasswordTraces, AreSeenWhereThereAreAny) {
  EXPECT_EQ(CountInMemory(kLong), 0) << "the test itself gives nothing away";
  {
    const platform::Secret plain = Unmasked(kLong);
    EXPECT_EQ(CountInMemory(kLong), 1);
    std::string utf8 = Utf8(plain);
    EXPECT_EQ(CountInMemory(kLong), 2);
    EXPECT_EQ(CountIn(utf8, kLong), 1);
    platform::Wipe(utf8);
  }
  EXPECT_EQ(CountInMemory(kLong), 0);
  EXPECT_DEATH(std::u16string(Unmasked(kLong).View()), "given back with a password in it");
}

TEST_F(PasswordTraces, AreNotLeftWhicheverWayThePasswordCame) {
  MakeDatabase();
  MaskedText former;
  for (const MaskedText password : {MaskedText(kShort), MaskedText(kLong)}) {
    ChangePassword(former, password);
    former = password;
    EXPECT_EQ(CountInMemory(password), 0) << "after the password was set";
    for (const Way way : {Way::NextWord, Way::SameWord, Way::Variable, Way::Prompt}) {
      SCOPED_TRACE(testing::Message() << password.size() << " characters, way "
                                      << static_cast<int>(way));
      EXPECT_EQ(Stan(way, password), 0) << output_;
      ExpectNoTraces(password);
      const std::vector<std::size_t> lastWord{way == Way::NextWord ? 7u : 6u};
      EXPECT_EQ(hidden_, way <= Way::SameWord ? lastWord : std::vector<std::size_t>());
    }
  }
}

TEST(PasswordOnTheCommandLine, IsOverwrittenWhereTheSystemShowsIt) {
  char program[] = "zimbratc", command[] = "stan", option[] = "--haslo", value[] = "tajne";
  char* words[] = {program, command, option, value, nullptr};
  platform::PosixConsole console(4, words);
  ASSERT_EQ(console.Arguments().size(), 3u);
  console.HideArgument(2);
  console.HideArgument(3);  // there is none
  EXPECT_EQ(std::string(value, sizeof value), std::string(sizeof value, '\0'));
  EXPECT_STREQ(option, "--haslo");
}

TEST_F(PasswordTraces, AreNotLeftByARefusedPasswordEither) {
  MakeDatabase();
  ChangePassword({}, kShort);
  for (const Way way : {Way::NextWord, Way::SameWord, Way::Variable, Way::Prompt}) {
    SCOPED_TRACE(static_cast<int>(way));
    EXPECT_EQ(Stan(way, kLong), 1);
    EXPECT_NE(output_.find("Błąd Nr 3031 - "), std::string::npos) << output_;
    ExpectNoTraces(kLong);
    ExpectNoTraces(kShort);
  }
}

}  // namespace
}  // namespace zimbrat::tests
