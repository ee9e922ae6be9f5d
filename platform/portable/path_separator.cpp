#include "platform/text.h"

namespace zimbrat::platform {

const char16_t kPathSeparator = u'/';

}  // namespace zimbrat::platform
