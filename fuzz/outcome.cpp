#include "outcome.h"

#include <cstdlib>
#include <iostream>

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::fuzz {

bool Attempt(const std::function<void()>& work) { return ErrorOf(work) == 0; }

std::int32_t ErrorOf(const std::function<void()>& work) {
  try {
    work();
    return 0;
  } catch (const platform::RunTimeError& error) {
    Require(error.Number() != 0 && !error.Description().empty(), "an error without number or text");
    // What an exception of the language became that nobody foresaw.
    if (error.Number() == platform::kErrAutomation) Fail(error.what());
    return error.Number();
  }
}

void Fail(std::string_view what) {
  std::cerr << "found: " << what << std::endl;
  std::abort();
}

void Require(bool holds, std::string_view what) {
  if (!holds) Fail(what);
}

}  // namespace zimbrat::fuzz
