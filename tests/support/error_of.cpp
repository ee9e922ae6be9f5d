#include "tests/support/error_of.h"

#include <gtest/gtest.h>

#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::tests {

RaisedError RaisedBy(const std::function<void()>& work) {
  try {
    work();
  } catch (const platform::RunTimeError& error) {
    EXPECT_FALSE(error.Description().empty()) << error.Number();
    return {error.Number(), std::u16string(error.Description())};
  }
  return {};
}

std::int32_t ErrorOf(const std::function<void()>& work) {
  return RaisedBy(work).number;
}

bool BlamesNewFile(std::u16string_view description) {
  return platform::Contains(description, u"w nowym pliku") || platform::Contains(description, u"nowy plik");
}

}  // namespace zimbrat::tests
