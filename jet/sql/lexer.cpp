#include "jet/sql/lexer.h"

#include <optional>
#include <utility>

#include "jet/file/errors.h"
#include "platform/numbers.h"
#include "platform/text.h"

#include "date_literal.h"

namespace zimbrat::jet {

namespace {

constexpr std::u16string_view kTwoUnitSigns[] = {u"<>", u"<=", u">="};
constexpr std::u16string_view kSigns = u"+-*/\\^&=<>(),.;!";
constexpr std::size_t kMaxRadixDigits = 11;  // 32 bits in octal

bool IsBlank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }
bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }
bool StartsName(char16_t c) {
  return c == u'_' || platform::UpperCase(c) != c || platform::LowerCase(c) != c || c == u'ß';
}
bool ContinuesName(char16_t c) { return IsDigit(c) || StartsName(c); }
bool IsRadixDigit(char16_t c, bool hexadecimal) {
  const char16_t upper = platform::UpperCase(c);
  return hexadecimal ? IsDigit(c) || (upper >= u'A' && upper <= u'F') : c >= u'0' && c <= u'7';
}

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
      tokens.push_back(std::move(token));
      if (tokens.back().kind == TokenKind::End) return tokens;
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
    if (c == u'&' && TryReadRadix(token)) return;
    if (StartsName(c)) return ReadName(token);
    ReadSign(token);
  }

  std::size_t EndOfName(std::size_t from) const {
    while (from < source_.size() && ContinuesName(source_[from])) ++from;
    return from;
  }

  // "Left$" is one name.
  void ReadName(Token& token) {
    std::size_t end = EndOfName(position_);
    if (end < source_.size() && source_[end] == u'$') ++end;
    token.kind = TokenKind::Name;
    token.text = source_.substr(position_, end - position_);
    position_ = end;
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

  // "&H1F" and "&O17". With other letters behind it the & joins: "A &Hala".
  bool TryReadRadix(Token& token) {
    const char16_t mark = platform::UpperCase(Ahead());
    if (mark != u'H' && mark != u'O') return false;
    const std::size_t first = position_ + 2;
    const std::size_t end = EndOfName(first);
    if (end == first) return false;
    for (std::size_t i = first; i < end; ++i) {
      if (!IsRadixDigit(source_[i], mark == u'H')) return false;
    }
    if (end - first > kMaxRadixDigits) Fail(u"Błąd składni w liczbie");
    token.kind = TokenKind::Literal;
    token.value = static_cast<std::int32_t>(platform::Val(source_.substr(position_, end - position_)));
    position_ = end;
    return true;
  }

  void ReadDate(Token& token) {
    const std::size_t close = source_.find(u'#', position_ + 1);
    if (close == source_.npos) Fail(u"Błąd składni w dacie");
    const std::optional<double> date = FindDateLiteral(source_.substr(position_ + 1, close - position_ - 1));
    if (!date) Fail(u"Błąd składni w dacie");
    token.kind = TokenKind::Literal;
    token.value = dao::Date{*date};
    position_ = close + 1;
  }

  std::u16string_view source_;
  std::size_t position_ = 0;
};

}  // namespace

std::vector<Token> Tokenize(std::u16string_view source) { return Lexer(source).Run(); }

}  // namespace zimbrat::jet
