// The description line of each page, by task. Next and Back write different ones for several pages.
#pragma once

#include "suite/program_state.h"

#include <string_view>

namespace zimbrat::app {

std::u16string_view DescriptionOnNext(std::u16string_view page, suite::Task task);
std::u16string_view DescriptionOnBack(std::u16string_view page, suite::Task task);

}  // namespace zimbrat::app
