// Work that holds the thread: the hourglass, and a label that shows that it goes on.
#pragma once

#include "suite/program_state.h"
#include "platform/controls.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace zimbrat::app {

// Stands in `place` while it lives, and nothing does afterwards. `label` shows what is done and for how
// long, anew each second of pulses.
class LongWork {
 public:
  LongWork(suite::ProgramState& state, LongWork*& place, platform::Label& label,
           std::u16string_view what);
  ~LongWork();
  LongWork(const LongWork&) = delete;
  LongWork& operator=(const LongWork&) = delete;

  void Pulse();
  // Tells why the form does not close.
  void RefuseToClose();

 private:
  void ShowLife();

  suite::ProgramState& state_;
  LongWork*& place_;
  platform::Label& label_;
  std::u16string what_;
  suite::Hourglass hourglass_;
  std::uint64_t start_;  // milliseconds of the clock
  std::uint64_t seconds_ = 0;
  std::uint64_t refusedUntil_ = 0;  // the refusal is shown up to this second
};

}  // namespace zimbrat::app
