// zimbratc from its words to its exit status.
#pragma once

#include <functional>
#include <memory>

#include "platform/dao.h"
#include "platform/system.h"

namespace zimbrat::console {

int Run(platform::System& system);

}  // namespace zimbrat::console
