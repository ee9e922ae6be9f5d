// Waiting for those who hold a file for a moment (platform/patience.h), while the program stays alive.
#pragma once

#include "suite/program_state.h"

#include <functional>
#include <memory>
#include <string_view>

namespace zimbrat::generator {

// Carries the step out until nobody else is in the way, for two seconds at most.
void Patiently(const suite::Surroundings& on, const std::function<void()>& step);

// A session on a file that is the program's own, so that whoever has it open lets go soon.
std::unique_ptr<suite::DatabaseSession> OpenPatiently(suite::ProgramState& state,
                                                      std::u16string_view path,
                                                      std::u16string_view connect);

}  // namespace zimbrat::generator
