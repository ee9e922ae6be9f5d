#include "long_work.h"

#include "suite/manners.h"
#include "platform/text.h"

namespace zimbrat::app {

LongWork::LongWork(suite::ProgramState& state, LongWork*& place, platform::Label& label,
                   std::u16string_view what)
    : state_(state),
      place_(place),
      label_(label),
      what_(what),
      hourglass_(state.on.host),
      start_(state.on.clock.Milliseconds()) {
  ShowLife();
  place_ = this;
}

LongWork::~LongWork() {
  place_ = nullptr;
  suite::Abandon([&] { label_.SetCaption(u""); });
}

void LongWork::Pulse() {
  const std::uint64_t seconds = (state_.on.clock.Milliseconds() - start_) / 1000;
  if (seconds == seconds_) return;
  seconds_ = seconds;
  ShowLife();
}

void LongWork::RefuseToClose() {
  constexpr std::uint64_t kShown = 5;
  refusedUntil_ = seconds_ + kShown;
  ShowLife();
}

void LongWork::ShowLife() {
  const std::u16string seconds = platform::DecimalText(static_cast<long long>(seconds_ % 60));
  constexpr std::u16string_view kRefusal = u"Zaczekaj na koniec pracy, potem zamkniesz okno";
  const std::u16string_view what = seconds_ < refusedUntil_ ? kRefusal : std::u16string_view(what_);
  label_.SetCaption(std::u16string(what) + u": " + platform::DecimalText(static_cast<long long>(seconds_ / 60)) +
                    (seconds.size() < 2 ? u":0" : u":") + seconds);
}

}  // namespace zimbrat::app
