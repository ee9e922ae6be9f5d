// Waiting for those who hold a file for a moment: a virus scanner, a program that synchronises
// folders, an engine that writes lazily.
#pragma once

#include <cstdint>
#include <functional>

#include "platform/clock.h"

namespace zimbrat::platform {

// For how long, and how often. In milliseconds.
inline constexpr std::uint32_t kPatience = 2000;
inline constexpr std::uint32_t kPatienceStep = 50;

// Of an error that says that somebody else has the file: 70, the engines' 3045 and its relatives,
// 3733 and 3734.
bool IsSomebodyElses(std::int32_t number);

// Carries the step out, again and again while it fails because of somebody else; the last failure
// comes through, and every other one at once. `pulse` is called in between; what it raises is heard
// elsewhere: what is waited for may be the clearing up.
void Patiently(Clock& clock, const std::function<void()>& pulse, const std::function<void()>& step);

}  // namespace zimbrat::platform
