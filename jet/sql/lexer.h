// Jet SQL and expressions as words: names, numbers, texts, dates, signs.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "platform/dao.h"

namespace zimbrat::jet {

enum class TokenKind { End, Name, BracketedName, Literal, Sign };

struct Token {
  TokenKind kind = TokenKind::End;
  std::u16string text;     // names as written, signs as they are
  dao::Value value;        // literals
  std::size_t offset = 0;  // of its first unit in the source
};

// The last token is End. Error 3075 for a literal that does not end or is none, 3126 for a bracket.
std::vector<Token> Tokenize(std::u16string_view source);

}  // namespace zimbrat::jet
