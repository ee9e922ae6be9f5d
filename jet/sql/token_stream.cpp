#include "jet/sql/token_stream.h"

#include "jet/file/errors.h"
#include "platform/text.h"

namespace zimbrat::jet {

Token TokenStream::Take() {
  const Token token = Peek();
  if (position_ + 1 < tokens_.size()) ++position_;
  return token;
}

bool TokenStream::IsWord(std::u16string_view word, std::size_t ahead) const {
  const Token& token = Peek(ahead);
  return token.kind == TokenKind::Name && platform::EqualIgnoringCase(token.text, word);
}

bool TokenStream::IsSign(std::u16string_view sign, std::size_t ahead) const {
  return Peek(ahead).kind == TokenKind::Sign && Peek(ahead).text == sign;
}

bool TokenStream::IsName(std::size_t ahead) const {
  const TokenKind kind = Peek(ahead).kind;
  return kind == TokenKind::Name || kind == TokenKind::BracketedName;
}

bool TokenStream::AcceptWord(std::u16string_view word) {
  if (!IsWord(word)) return false;
  Take();
  return true;
}

bool TokenStream::AcceptSign(std::u16string_view sign) {
  if (!IsSign(sign)) return false;
  Take();
  return true;
}

std::u16string TokenStream::TakeName(std::int32_t error) {
  if (!IsName()) Raise(error);
  return Take().text;
}

void TokenStream::RequireWord(std::u16string_view word, std::int32_t error) {
  if (!AcceptWord(word)) Raise(error);
}

void TokenStream::RequireSign(std::u16string_view sign, std::int32_t error) {
  if (!AcceptSign(sign)) Raise(error);
}

void TokenStream::Fail(std::u16string_view message) const {
  Raise(platform::kErrQueryExpression, message, source_);
}

void TokenStream::FailAsTooComplex() const { Fail(u"Wyrażenie jest zbyt złożone"); }

}  // namespace zimbrat::jet
