// The words of an error report by mail, in the three shapes that it can have.
#pragma once

#include <string>

namespace zimbrat::errors {

struct ErrorFacts {
  std::u16string number;
  std::u16string source;
  std::u16string explanation;
  std::u16string description;  // with the routine's name
};

std::u16string ReportSubject();
// Lines, CR LF between them.
std::u16string ReportText(const ErrorFacts& facts);
// With room for the user's own words above.
std::u16string ReportTextToComplete(const ErrorFacts& facts);
// Nothing in it is encoded: the mail program receives it as it stands.
std::u16string ReportLink(const ErrorFacts& facts);

}  // namespace zimbrat::errors
