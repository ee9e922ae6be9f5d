#include "jet/sql/lexer.h"

#include <cmath>
#include <optional>

#include "jet/file/errors.h"
#include "platform/dates.h"
#include "platform/numbers.h"

namespace zimbrat::jet {

namespace {

constexpr std::u16string_view kTwoUnitSigns[] = {u"<>", u"<=", u">="};
constexpr std::u16string_view kSigns = u"+-*/\\^&=<>(),.;!";

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }
bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool StartsName(char16_t c) {
  return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'_' || c >= 0xC0;
}
bool ContinuesName(char16_t c) { return StartsName(c) || IsDigit(c) || c == u'$'; }

class Lexer {
 public:
  explicit Lexer(std::u16string_view source) : source_(source) {}

  std::vector<Token> Run() {
    std::vector<Token> tokens;
    while (true) {
      while (position_ < source_.size() && IsBlank(source_[position_])) ++position_;
      Token token;
      token.offset = position_;
      if (position_ < source_.size()) Read(token);
      tokens.push_back(token);
      if (token.kind == TokenKind::End) return tokens;
    }
  }

 private:
  char16_t Here() const { return source_[position_]; }
  char16_t Ahead(std::size_t by = 1) const {
    return position_ + by < source_.size() ? source_[position_ + by] : u'\0';
  }
  [[noreturn]] void Fail(std::u16string_view message) {
    Raise(platform::kErrQueryExpression, message, source_);
  }

  void Read(Token& token) {
    const char16_t c = Here();
    if (c == u'\'' || c == u'"') return ReadText(token, c);
    if (c == u'#') return ReadDate(token);
    if (c == u'[' || c == u'`') return ReadBracketed(token, c == u'[' ? u']' : u'`');
    if (IsDigit(c) || (c == u'.' && IsDigit(Ahead()))) return ReadNumber(token);
    if (c == u'&' && (Ahead() == u'H' || Ahead() == u'h' || Ahead() == u'O' || Ahead() == u'o')) {
      return ReadRadix(token);
    }
    if (StartsName(c)) {
      token.kind = TokenKind::Name;
      while (position_ < source_.size() && ContinuesName(Here())) token.text += source_[position_++];
      return;
    }
    ReadSign(token);
  }

  void ReadSign(Token& token) {
    token.kind = TokenKind::Sign;
    for (const std::u16string_view sign : kTwoUnitSigns) {
      if (source_.substr(position_, 2) == sign) {
        token.text = sign;
        position_ += 2;
        return;
      }
    }
    if (kSigns.find(Here()) == kSigns.npos) Fail(u"Błąd składni");
    token.text = Here();
    ++position_;
  }

  // A doubled delimiter stands for itself.
  void ReadText(Token& token, char16_t delimiter) {
    std::u16string text;
    for (++position_; position_ < source_.size(); ++position_) {
      if (Here() == delimiter) {
        if (Ahead() != delimiter) {
          ++position_;
          token.kind = TokenKind::Literal;
          token.value = std::move(text);
          return;
        }
        ++position_;
      }
      text += Here();
    }
    Fail(u"Błąd składni w ciągu");
  }

  void ReadBracketed(Token& token, char16_t end) {
    const std::size_t close = source_.find(end, position_ + 1);
    if (close == source_.npos) Raise(platform::kErrBracketing, source_.substr(position_ + 1));
    token.kind = TokenKind::BracketedName;
    token.text = source_.substr(position_ + 1, close - position_ - 1);
    position_ = close + 1;
  }

  void ReadNumber(Token& token) {
    const std::size_t start = position_;
    bool whole = true;
    while (position_ < source_.size() && IsDigit(Here())) ++position_;
    if (position_ < source_.size() && Here() == u'.') {
      whole = false;
      ++position_;
      while (position_ < source_.size() && IsDigit(Here())) ++position_;
    }
    if (position_ < source_.size() && (Here() == u'e' || Here() == u'E')) {
      const std::size_t digits = Ahead() == u'+' || Ahead() == u'-' ? 2 : 1;
      if (IsDigit(Ahead(digits))) {
        whole = false;
        position_ += digits;
        while (position_ < source_.size() && IsDigit(Here())) ++position_;
      }
    }
    if (position_ < source_.size() && StartsName(Here())) Fail(u"Błąd składni w liczbie");
    const double number = platform::Val(source_.substr(start, position_ - start));
    token.kind = TokenKind::Literal;
    if (whole && number <= 2147483647.0) {
      token.value = static_cast<std::int32_t>(number);
    } else {
      token.value = number;
    }
  }

  void ReadRadix(Token& token) {
    const std::size_t start = position_;
    position_ += 2;
    while (position_ < source_.size() && ContinuesName(Here())) ++position_;
    token.kind = TokenKind::Literal;
    token.value = static_cast<std::int32_t>(platform::Val(source_.substr(start, position_ - start)));
  }

  void ReadDate(Token& token) {
    const std::size_t close = source_.find(u'#', position_ + 1);
    if (close == source_.npos) Fail(u"Błąd składni w dacie");
    const std::optional<double> date = FindLiteralDate(source_.substr(position_ + 1, close - position_ - 1));
    if (!date || !platform::IsDateInRange(*date)) Fail(u"Błąd składni w dacie");
    token.kind = TokenKind::Literal;
    token.value = dao::Date{*date};
    position_ = close + 1;
  }

  // Twelve hours with AM or PM behind them, as a part of a day to be added.
  static std::optional<double> FindHalfDay(std::u16string_view& text) {
    while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
    if (text.size() < 3 || (text.back() != u'M' && text.back() != u'm')) return 0.0;
    const char16_t half = text[text.size() - 2];
    const bool afternoon = half == u'P' || half == u'p';
    if (!afternoon && half != u'A' && half != u'a') return std::nullopt;
    text.remove_suffix(2);
    while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
    // The hour is what stands before the first colon; 12 counts as 0.
    const std::size_t colon = text.find(u':');
    const std::size_t start = text.find_last_of(u' ', colon) + 1;
    const double hour = platform::Val(text.substr(start, colon - start));
    if (hour < 1 || hour > 12) return std::nullopt;
    return (hour == 12 ? -0.5 : 0.0) + (afternoon ? 0.5 : 0.0);
  }

  static std::optional<double> FindLiteralDate(std::u16string_view text) {
    const std::optional<double> half = FindHalfDay(text);
    const std::optional<double> date = half ? FindPlainDate(text) : std::nullopt;
    if (!date) return std::nullopt;
    return *date < 0 ? *date - *half : *date + *half;
  }

  // American order with slashes, whatever the system; else the forms that the platform reads.
  static std::optional<double> FindPlainDate(std::u16string_view text) {
    const std::size_t slash = text.find(u'/');
    const std::size_t second = slash == text.npos ? text.npos : text.find(u'/', slash + 1);
    if (second == text.npos) return platform::FindDate(text);
    std::size_t yearEnd = second + 1;
    while (yearEnd < text.size() && IsDigit(text[yearEnd])) ++yearEnd;
    int month = static_cast<int>(platform::Val(text.substr(0, slash)));
    int day = static_cast<int>(platform::Val(text.substr(slash + 1, second - slash - 1)));
    int year = static_cast<int>(platform::Val(text.substr(second + 1, yearEnd - second - 1)));
    if (yearEnd - second - 1 <= 2) year += year < 30 ? 2000 : 1900;
    if (month > 12) std::swap(month, day);
    if (month < 1 || month > 12 || day < 1 || day > 31 || year < 100 || year > 9999) return std::nullopt;
    const double days = platform::DateSerial(year, month, day);
    if (platform::PartsOfDate(days).day != day) return std::nullopt;
    const std::u16string_view rest = text.substr(yearEnd);
    if (rest.find_first_not_of(u" \t") == rest.npos) return days;
    const std::optional<double> time = platform::FindDate(rest.substr(rest.find_first_not_of(u" \t")));
    if (!time || *time < 0 || *time >= 1) return std::nullopt;
    return days < 0 ? days - *time : days + *time;
  }

  std::u16string_view source_;
  std::size_t position_ = 0;
};

}  // namespace

std::vector<Token> Tokenize(std::u16string_view source) { return Lexer(source).Run(); }

}  // namespace zimbrat::jet
