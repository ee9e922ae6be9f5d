// The repair of a database by an installed engine, of which only its call in place is known, and which most
// engines refuse: on a copy, that takes the place of the file when it is good.
#pragma once

#include <string_view>

#include "dao_object.h"

#include "platform/installed_engine.h"

namespace zimbrat::platform {

// Error 3056, the file as it was, when the engine would lose something; otherwise the errors of opening. The
// password of a protected file is asked for once.
void RepairByEngine(DaoObject& engine, const InstalledEngineNeeds& needs, std::u16string_view path);

}  // namespace zimbrat::platform
