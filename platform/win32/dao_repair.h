// The repair of a database by an installed engine: always on a copy, that takes the place of the
// file when it is good.
#pragma once

#include <string_view>

#include "dao_object.h"

#include "platform/dao.h"
#include "platform/installed_engine.h"

namespace zimbrat::platform {

// Error 3056, the file as it was, when the engine lists losses or a table is missing; otherwise the
// errors of opening. A file of which nobody knows what it held, or whose tables have fewer rows
// now, is kept beside the repaired one and named in the outcome. The password of a protected file
// is asked for once.
dao::RepairOutcome RepairByEngine(DaoObject& engine, const InstalledEngineNeeds& needs,
                                  std::u16string_view path);

}  // namespace zimbrat::platform
