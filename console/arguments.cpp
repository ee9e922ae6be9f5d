#include "console/arguments.h"

#include "console/nearest.h"
#include "platform/text.h"

#include <algorithm>
#include <span>

namespace zimbrat::console {
namespace {

constexpr OptionSpec kCommonOptions[] = {
    {u"--json", u""}, {u"--cicho", u""}, {u"--pomoc", u""}, {u"--wersja", u""}, {kEngineOption, u"wbudowany"}};

std::u16string_view CommonName(std::u16string_view name) {
  if (name == u"--help" || name == u"-h") return u"--pomoc";
  if (name == u"--version") return u"--wersja";
  return name;
}

const OptionSpec* FindAmong(std::span<const OptionSpec> options, std::u16string_view name) {
  const auto found = std::ranges::find(options, name, &OptionSpec::name);
  return found == options.end() ? nullptr : &*found;
}

bool IsCommonSwitch(std::u16string_view name) {
  const OptionSpec* option = FindAmong(kCommonOptions, name);
  return option != nullptr && option->value.empty();
}

// One that takes a value, or a switch of the command's own.
const OptionSpec* FindOption(const CommandSpec* command, std::u16string_view name) {
  const OptionSpec* option = command == nullptr ? nullptr : FindAmong(command->options, name);
  if (option != nullptr || IsCommonSwitch(name)) return option;
  return FindAmong(kCommonOptions, name);
}

std::vector<std::u16string> OptionNames(const CommandSpec* command) {
  std::vector<std::u16string> names;
  if (command != nullptr) {
    for (const OptionSpec& option : command->options) names.emplace_back(option.name);
  }
  for (const OptionSpec& option : kCommonOptions) names.emplace_back(option.name);
  return names;
}

std::u16string Suggestion(std::u16string_view word, const std::vector<std::u16string>& candidates) {
  return u" Czy chodziło o " + NearestWord(word, candidates) + u"?";
}

// Reads the words one after another; the first fault stops the reading.
class Reader {
 public:
  explicit Reader(const std::vector<std::u16string>& words) : words_(words) {}

  Arguments Read() {
    // Help, version and JSON count wherever they stand, also behind a fault.
    for (std::size_t i = 0; i < words_.size(); ++i) {
      const bool isValue = i > 0 && words_[i - 1].starts_with(u"--") && !words_[i].starts_with(u"--") &&
                           !IsCommonSwitch(CommonName(words_[i - 1]));
      const std::u16string_view word = words_[i];
      if (!isValue) NoteCommon(CommonName(word.substr(0, word.find(u'='))));
    }
    while (position_ < words_.size() && !result_.fault) ReadWord(words_[position_++]);
    if (!result_.fault) CheckRequired();
    return std::move(result_);
  }

 private:
  void NoteCommon(std::u16string_view name) {
    if (name == u"--pomoc") result_.wantsHelp = true;
    if (name == u"--wersja") result_.wantsVersion = true;
    if (name == u"--json") result_.isJson = true;
    if (name == u"--cicho") result_.isQuiet = true;
  }

  void ReadWord(const std::u16string& word) {
    if (IsCommonSwitch(CommonName(word))) return NoteCommon(CommonName(word));
    const bool takesAll = result_.command != nullptr && !result_.command->words.empty();
    if (takesAll && word.substr(0, word.find(u'=')) != kEngineOption) {
      if (!result_.words.empty()) result_.words += u' ';
      result_.words += word;
    } else if (word.starts_with(u"-")) {
      ReadOption(word);
    } else if (result_.command != nullptr) {
      // The rest of a password with blanks is not to be shown.
      const bool isSecret = lastOption_ == kPasswordOption;
      result_.fault = u"Zbędne słowo" +
                      (isSecret ? u" po wartości opcji " + std::u16string(lastOption_) : u": " + word) +
                      u". Wartości podaje się po nazwie opcji, a tekst ze spacjami w cudzysłowie.";
    } else {
      ReadCommand(word);
    }
  }

  void ReadCommand(const std::u16string& word) {
    result_.command = FindCommand(word);
    if (result_.command != nullptr) return;
    std::vector<std::u16string> names;
    for (const CommandSpec& command : Commands()) names.emplace_back(command.name);
    result_.fault = u"Nieznane polecenie: " + word + u"." + Suggestion(word, names);
  }

  void ReadOption(const std::u16string& word) {
    const std::size_t equals = word.find(u'=');
    const std::u16string name = word.substr(0, equals);
    const OptionSpec* option = FindOption(result_.command, name);
    if (option == nullptr && IsCommonSwitch(CommonName(name))) {
      result_.fault = u"Opcja " + name + u" nie przyjmuje wartości.";
    } else if (option == nullptr) {
      result_.fault =
          u"Nieznana opcja: " + name + u"." + Suggestion(name, OptionNames(result_.command));
    } else if (result_.Has(name)) {
      result_.fault = u"Opcja " + name + u" występuje więcej niż raz.";
    } else if (option->value.empty()) {
      if (equals == std::u16string::npos) {
        result_.options.emplace(option->name, platform::Secret());
      } else {
        result_.fault = u"Opcja " + name + u" nie przyjmuje wartości.";
      }
    } else {
      TakeValue(*option, word, equals);
    }
  }

  void TakeValue(const OptionSpec& option, const std::u16string& word, std::size_t equals) {
    lastOption_ = option.name;
    if (equals != std::u16string::npos) {
      result_.options.emplace(option.name, std::u16string_view(word).substr(equals + 1));
    } else if (position_ < words_.size() && !words_[position_].starts_with(u"--")) {
      result_.options.emplace(option.name, words_[position_++]);
    } else {
      result_.fault = u"Brak wartości opcji " + word + u". Podaj: " + word + u" " +
                      std::u16string(option.value);
    }
  }

  void CheckRequired() {
    if (result_.command == nullptr) return;
    for (const OptionSpec& option : result_.command->options) {
      if (!option.isRequired || result_.Has(option.name)) continue;
      result_.fault = u"Brak opcji " + std::u16string(option.name) + u" " +
                      std::u16string(option.value) + u" polecenia " +
                      std::u16string(result_.command->name) + u".";
      return;
    }
  }

  const std::vector<std::u16string>& words_;
  std::size_t position_ = 0;
  std::u16string_view lastOption_;  // that took a value
  Arguments result_;
};

// All digits, at most `longest` of them.
std::optional<int> FindDigits(std::u16string_view text, std::size_t longest) {
  if (text.empty() || text.size() > longest) return std::nullopt;
  int number = 0;
  for (const char16_t unit : text) {
    if (unit < u'0' || unit > u'9') return std::nullopt;
    number = 10 * number + (unit - u'0');
  }
  return number;
}

}  // namespace

const std::vector<CommandSpec>& Commands() {
  static const std::vector<CommandSpec> kCommands = {
      {u"nowa",
       u"tworzy nową, pustą bazę danych",
       {{u"--folder", u"F", true},
        {u"--nazwa", u"N", true},
        {u"--struktury", u"A.stb[,B.stb...]", true},
        {u"--od", u"M/RRRR"},
        {u"--do", u"M/RRRR"},
        {u"--nadpisz", u""},
        {u"--do-listy", u""}}},
      {u"dodaj",
       u"dodaje do bazy struktury programów",
       {{u"--baza", u"P", true}, {u"--struktury", u"A.stb[;B.stb...]", true}, {kPasswordOption, u"H"}}},
      {u"wzorzec",
       u"tworzy nową bazę danych, używając jako wzorca istniejącej",
       {{u"--wzorzec", u"P", true},
        {u"--folder", u"F", true},
        {u"--nazwa", u"N", true},
        {u"--od", u"M/RRRR"},
        {u"--do", u"M/RRRR"},
        {kPasswordOption, u"H"},
        {u"--nadpisz", u""},
        {u"--do-listy", u""}}},
      {u"sprawdz",
       u"sprawdza, naprawia i aktualizuje bazę danych",
       {{u"--baza", u"P", true}, {u"--struktury", u"A.stb[;B.stb...]"}, {kPasswordOption, u"H"}}},
      {u"stan",
       u"pokazuje programy bazy i stan ich struktur",
       {{u"--baza", u"P", true}, {u"--folder-struktur", u"F"}, {kPasswordOption, u"H"}}},
      {u"programy",
       u"pokazuje programy pakietu z wersjami struktur",
       {{u"--folder-struktur", u"F"}}},
      {u"lista", u"pokazuje zapamiętane bazy pakietu", {}},
      {u"silnik", u"pokazuje, który silnik baz danych wykonuje zadania", {}},
      {u"auto",
       u"sprawdza i aktualizuje bazę tak, jak okno na żądanie innego programu; stan zostaje w "
       u"rejestrze",
       {},
       u"\"CZŁON|BAZA\""},
  };
  return kCommands;
}

const CommandSpec* FindCommand(std::u16string_view name) {
  const auto& commands = Commands();
  const auto found = std::find_if(commands.begin(), commands.end(),
                                  [&](const CommandSpec& c) { return c.name == name; });
  return found == commands.end() ? nullptr : &*found;
}

std::u16string_view Arguments::View(std::u16string_view option) const {
  const auto found = options.find(option);
  return found == options.end() ? std::u16string_view() : found->second.View();
}

Arguments ParseArguments(const std::vector<std::u16string>& words) {
  return Reader(words).Read();
}

void ForgetPasswords(platform::Console& console, std::vector<std::u16string>& words) {
  bool isValue = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const bool isPassword = isValue || words[i].starts_with(std::u16string(kPasswordOption) + u"=");
    isValue = words[i] == kPasswordOption;
    if (!isPassword) continue;
    console.HideArgument(i);
    platform::Wipe(words[i]);
  }
}

std::optional<MonthAndYear> FindMonthAndYear(std::u16string_view text) {
  constexpr int kFirstYear = 1900, kLastYear = 2999;
  const std::size_t slash = text.find(u'/');
  if (slash == std::u16string_view::npos) return std::nullopt;
  const auto month = FindDigits(text.substr(0, slash), 2);
  const auto year = FindDigits(text.substr(slash + 1), 4);
  if (!month || !year || *month < 1 || *month > 12) return std::nullopt;
  if (*year < kFirstYear || *year > kLastYear) return std::nullopt;
  return MonthAndYear{*month, *year};
}

std::vector<std::u16string> SplitNames(std::u16string_view list) {
  std::vector<std::u16string> names;
  while (!list.empty()) {
    const std::size_t end = std::min(list.find_first_of(u",;"), list.size());
    const std::u16string_view name = platform::TrimBlanks(list.substr(0, end));
    if (!name.empty()) names.emplace_back(name);
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return names;
}

}  // namespace zimbrat::console
