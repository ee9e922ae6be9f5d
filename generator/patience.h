// Waiting for those who hold a file for a moment: a virus scanner, a program that synchronises
// folders.
#pragma once

#include "suite/program_state.h"

#include <functional>
#include <memory>
#include <string_view>

namespace zimbrat::generator {

// For how long, and how often. In milliseconds.
inline constexpr std::uint32_t kPatience = 2000;
inline constexpr std::uint32_t kPatienceStep = 50;

// Carries the step out, again and again while it fails because of somebody else (70, and the
// engines' 3045 and its relatives); the last failure comes through, and every other one at once.
void Patiently(const suite::Surroundings& on, const std::function<void()>& step);

// A session on a file that is the program's own, so that whoever has it open lets go soon.
std::unique_ptr<suite::DatabaseSession> OpenPatiently(suite::ProgramState& state,
                                                      std::u16string_view path,
                                                      std::u16string_view connect);

}  // namespace zimbrat::generator
