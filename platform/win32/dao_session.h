// Sessions of an installed engine and the databases open in them.
#pragma once

#include <memory>
#include <string_view>

#include "dao_object.h"

#include "platform/clock.h"
#include "platform/dao.h"

namespace zimbrat::platform {

// A new session of the engine behind `engine`. Its errors are those of CreateWorkspace.
std::shared_ptr<dao::Workspace> MakeDaoWorkspace(DaoObject& engine, Clock& clock,
                                                 std::u16string_view name, std::u16string_view user,
                                                 std::u16string_view password);

}  // namespace zimbrat::platform
