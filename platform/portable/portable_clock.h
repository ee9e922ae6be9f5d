// The clock of the standard library. The regional formats are data, since the process's locale knows
// nothing of them.
#pragma once

#include "platform/clock.h"

namespace zimbrat::platform {

// "d", "dd", "M", "MM", "yy", "yyyy", "H", "HH", "h", "hh", "mm", "tt" and anything between, as Windows
// writes such patterns.
struct RegionalFormats {
  std::u16string shortDate = u"dd.MM.yyyy";
  std::u16string shortTime = u"HH:mm";
};

class PortableClock : public Clock {
 public:
  explicit PortableClock(RegionalFormats formats = {});

  double Now() override;
  std::uint32_t Random() override;
  std::u16string ShortDate() override;
  std::u16string ShortTime() override;
  std::uint64_t Milliseconds() override;
  void Sleep(std::uint32_t milliseconds) override;

 private:
  RegionalFormats formats_;
};

}  // namespace zimbrat::platform
