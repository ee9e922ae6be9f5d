// Which database engine the option or the variable wants.
#pragma once

#include "console/arguments.h"
#include "engines/engine_choice.h"
#include "platform/environment.h"

#include <optional>
#include <string>

namespace zimbrat::console {

// The option wins over the variable. Returns what is wrong with the word, with the nearest right one.
std::optional<std::u16string> FindWishFault(const Arguments& arguments, platform::Environment& environment,
                                            engines::Wish& wish);

}  // namespace zimbrat::console
