#include "jet/file/errors.h"

#include "platform/text.h"

namespace zimbrat::jet {

using namespace zimbrat::platform;

void Raise(std::int32_t number, std::u16string_view a, std::u16string_view b) {
  throw RunTimeError(number, {}, dao::ErrorText(number, a, b));
}

void RaiseDamaged(std::u16string_view what) { Raise(kErrCannotOpenDatabase, what); }

void RaiseDamagedPage(std::uint32_t page, std::u16string_view what) {
  RaiseDamaged(u"strona " + DecimalText(page) + u", " + std::u16string(what));
}

void RaiseForeignOrder() {
  throw RunTimeError(kErrReadOnly, {},
                     dao::ErrorText(kErrReadOnly) +
                         u" Baza ma inny porządek sortowania niż ogólny; ten aparat może ją tylko czytać.");
}

}  // namespace zimbrat::jet
