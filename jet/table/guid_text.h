// GUIDs as text.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/dao.h"

namespace zimbrat::jet {

// "{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}", with or without the braces.
std::optional<dao::Guid> FindGuid(std::u16string_view text);
// With braces and capitals.
std::u16string TextFromGuid(const dao::Guid& guid);

}  // namespace zimbrat::jet
