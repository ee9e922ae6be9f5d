// How a routine meets a run-time error: the wrappers around its body, and the only places below the
// entry programs where one is caught.
#pragma once

#include "suite/program_state.h"
#include "platform/run_time_error.h"

#include <exception>
#include <optional>
#include <utility>

namespace zimbrat::suite {

// Go on: what failed in `body` is skipped. Returns the error for those who look at its number
// afterwards.
template <class Body>
std::optional<platform::RunTimeError> Attempt(Body&& body) {
  try {
    std::forward<Body>(body)();
    return std::nullopt;
  } catch (const std::exception&) {
    return platform::CurrentRunTimeError();
  }
}

// Abandon: what a destructor tries on its way. Nothing is made of an error, since memory may be what
// is missing.
template <class Body>
void Abandon(Body&& body) noexcept {
  try {
    std::forward<Body>(body)();
  } catch (const std::exception&) {
    // Nobody is left to be told.
  }
}

// Record: the error's number, source and description go into the context and the result is false.
template <class Body>
bool Record(KontekstBledu& context, Body&& body) {
  bool result = false;
  if (const auto error = Attempt([&] { result = std::forward<Body>(body)(); })) {
    context.RecordError(*error);
    return false;
  }
  return result;
}

// Report: the error goes to the error report under the routine's own name.
template <class Body>
void Report(platform::Host& host, std::u16string_view routine, Body&& body) {
  if (const auto error = Attempt(std::forward<Body>(body))) host.ReportError(*error, routine);
}

}  // namespace zimbrat::suite
