#include "platform/run_time_error.h"

#include <new>
#include <utility>

#include "platform/error_numbers.h"
#include "platform/text.h"

namespace zimbrat::platform {

RunTimeError::RunTimeError(std::int32_t number, std::u16string source, std::u16string description)
    : number_(number),
      source_(std::move(source)),
      description_(std::move(description)),
      what_(Utf8FromUtf16(description_)) {}

RunTimeError CurrentRunTimeError() {
  try {
    throw;
  } catch (const RunTimeError& error) {
    return error;
  } catch (const std::bad_alloc&) {
    return RunTimeError(kErrOutOfMemory, u"Zimbrat", u"Brak pamięci");
  } catch (const std::exception& error) {
    return RunTimeError(kErrAutomation, u"Zimbrat", Utf16FromUtf8(error.what()));
  }
}

}  // namespace zimbrat::platform
