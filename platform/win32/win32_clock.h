// The clock of Windows, with the user's regional formats.
#pragma once

#include "platform/clock.h"

namespace zimbrat::platform {

class Win32Clock : public Clock {
 public:
  double Now() override;
  std::uint32_t Random() override;
  std::u16string ShortDate() override;
  std::u16string ShortTime() override;
  std::uint64_t Milliseconds() override;
  void Sleep(std::uint32_t milliseconds) override;
};

}  // namespace zimbrat::platform
