// zimbratc from its words to its exit status.
#pragma once

#include "platform/dao.h"
#include "platform/system.h"

#include <functional>
#include <memory>

namespace zimbrat::console {

int Run(platform::System& system);

}  // namespace zimbrat::console
