#include "tests/support/error_of.h"

#include <gtest/gtest.h>

#include "platform/run_time_error.h"

namespace zimbrat::tests {

std::int32_t ErrorOf(const std::function<void()>& work) {
  try {
    work();
  } catch (const platform::RunTimeError& error) {
    EXPECT_FALSE(error.Description().empty()) << error.Number();
    return error.Number();
  }
  return 0;
}

}  // namespace zimbrat::tests
