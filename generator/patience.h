// Waiting for those who hold a file for a moment: a virus scanner, a program that synchronises
// folders.
#pragma once

#include "suite/program_state.h"

#include <functional>

namespace zimbrat::generator {

// For how long, and how often. In milliseconds.
inline constexpr std::uint32_t kPatience = 2000;
inline constexpr std::uint32_t kPatienceStep = 50;

// Carries the step out, again and again while it fails with error 70; the last failure comes
// through, and every other one at once.
void Patiently(const suite::Surroundings& on, const std::function<void()>& step);

}  // namespace zimbrat::generator
