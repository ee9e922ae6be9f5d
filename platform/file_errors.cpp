#include "platform/file_errors.h"

#include <string>

namespace zimbrat::platform {

RunTimeError FileError(std::int32_t number, std::u16string_view operation, std::u16string_view path) {
  std::u16string description(TextOfError(number));
  description += u": ";
  description += operation;
  description += u": ";
  description += path;
  return RunTimeError(number, kOwnErrorSource, std::move(description));
}

}  // namespace zimbrat::platform
