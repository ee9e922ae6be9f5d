// What the operators of expressions mean for values. Null goes in and comes out as Jet has it.
#pragma once

#include <cstddef>
#include <string_view>

#include "jet/sql/expression.h"
#include "platform/dao.h"

namespace zimbrat::jet {

// The longest text that an expression may make; beyond it is error 7.
inline constexpr std::size_t kMaxResultLength = 1 << 20;
void CheckResultLength(std::size_t length);

// How a value counts: a Boolean is whole, a numeric text a Double.
enum class NumberKind { Whole, Currency, Decimal, Date, Double };
// Error 3464 for what is no number.
NumberKind KindOfNumber(const dao::Value& value);
double NumberOf(const dao::Value& value);

// Power to Subtract. Errors 3464 for what is no number, 6 and 11.
dao::Value Arithmetic(Operator op, const dao::Value& a, const dao::Value& b);
dao::Value Negated(const dao::Value& value);
// The & operator: Null counts as empty, two Nulls stay Null.
dao::Value JoinTexts(const dao::Value& a, const dao::Value& b);

// Negative, zero or positive, neither value Null. Texts compare by the sort order, without blanks at the end.
// Error 3464 for types that do not compare: text with a number or date, bytes with anything else.
int CompareValues(const dao::Value& a, const dao::Value& b);
// Equal to GreaterEqual.
dao::Value Comparison(Operator op, const dao::Value& a, const dao::Value& b);

// And, Or, Xor, Equivalent, Implies: on the bits of a Long, with Null as the unknown.
dao::Value Logic(Operator op, const dao::Value& a, const dao::Value& b);
dao::Value LogicalNot(const dao::Value& value);

// The signs of a pattern besides [list] and [!list].
struct Wildcards {
  char16_t run;    // any number of characters
  char16_t one;    // one character
  char16_t digit;  // one digit; U+0000 for none
};
inline constexpr Wildcards kLikeWildcards = {u'*', u'?', u'#'};
inline constexpr Wildcards kALikeWildcards = {u'%', u'_', u'\0'};

// Case does not count, blanks at the end do. What would take more than 20 million steps is error 3075; no
// pattern takes more than the product of the lengths.
bool MatchesPattern(std::u16string_view text, std::u16string_view pattern, const Wildcards& wildcards);

}  // namespace zimbrat::jet
