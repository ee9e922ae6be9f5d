#include "platform/automation.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::platform {

std::unique_ptr<AutomationObject> Automation::Create(std::u16string_view) {
  throw OwnError(kErrCannotCreateObject);
}

}  // namespace zimbrat::platform
