// The tokens of a text with a place among them, as the parsers of expressions and statements hand it on.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "jet/sql/lexer.h"

namespace zimbrat::jet {

// Nesting of parentheses, operators and queries together: what is parsed by recursion is bounded by it.
inline constexpr int kMaxNesting = 200;
// A query counts for as many parentheses.
inline constexpr int kQueryNesting = 4;

class TokenStream {
 public:
  explicit TokenStream(std::u16string_view source) : source_(source), tokens_(Tokenize(source)) {}

  const Token& Peek(std::size_t ahead = 0) const {
    return tokens_[std::min(position_ + ahead, tokens_.size() - 1)];
  }
  Token Take();
  bool IsWord(std::u16string_view word, std::size_t ahead = 0) const;
  bool IsSign(std::u16string_view sign, std::size_t ahead = 0) const;
  bool IsName(std::size_t ahead = 0) const;
  bool AcceptWord(std::u16string_view word);
  bool AcceptSign(std::u16string_view sign);
  bool AtEnd() const { return Peek().kind == TokenKind::End; }
  const std::u16string& Source() const { return source_; }

  // Errors of the number given when something else comes next.
  std::u16string TakeName(std::int32_t error);
  void RequireWord(std::u16string_view word, std::int32_t error);
  void RequireSign(std::u16string_view sign, std::int32_t error);
  [[noreturn]] void Fail(std::u16string_view message) const;  // 3075
  [[noreturn]] void FailAsTooComplex() const;                 // 3075

 private:
  friend class Nesting;

  std::u16string source_;
  std::vector<Token> tokens_;
  std::size_t position_ = 0;
  int nesting_ = 0;
};

// Counts one nesting for its lifetime; error 3075 when it is too deep.
class Nesting {
 public:
  explicit Nesting(TokenStream& tokens, int weight = 1) : tokens_(tokens), weight_(weight) {
    if (tokens_.nesting_ + weight_ > kMaxNesting) tokens_.FailAsTooComplex();
    tokens_.nesting_ += weight_;
  }
  ~Nesting() { tokens_.nesting_ -= weight_; }
  Nesting(const Nesting&) = delete;
  Nesting& operator=(const Nesting&) = delete;

 private:
  TokenStream& tokens_;
  int weight_;
};

}  // namespace zimbrat::jet
