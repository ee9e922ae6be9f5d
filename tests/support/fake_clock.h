// A clock that shows what the test sets.
#pragma once

#include "platform/clock.h"

namespace zimbrat::tests {

class FakeClock : public platform::Clock {
 public:
  double now = 37657.25;  // 2003-02-05 06:00
  std::u16string shortDate = u"05.02.2003";
  std::u16string shortTime = u"06:00";
  std::uint64_t milliseconds = 0;
  // Added to `milliseconds` at each question, for loops that wait.
  std::uint64_t step = 0;
  // Start of the sequence that Random gives: the same one in every run.
  std::uint32_t seed = 1;

  double Now() override { return now; }
  std::uint32_t Random() override;
  std::u16string ShortDate() override { return shortDate; }
  std::u16string ShortTime() override { return shortTime; }
  std::uint64_t Milliseconds() override { return milliseconds += step; }
  void Sleep(std::uint32_t duration) override { milliseconds += duration; }
};

}  // namespace zimbrat::tests
