// What opens a protected database.
#pragma once

#include <string_view>

#include "platform/secret.h"

namespace zimbrat::dao {

// ";pwd=" + password + ";".
platform::Secret ConnectText(std::u16string_view password);

}  // namespace zimbrat::dao
