// The faults that a check has found so far: errors up to a limit, and as many warnings.
#pragma once

#include <concepts>
#include <string>
#include <string_view>
#include <vector>

#include "jet/check/check.h"
#include "platform/text.h"

namespace zimbrat::jet::check {

inline void AppendPart(std::u16string& text, std::u16string_view part) {
  text += part;
}
inline void AppendPart(std::u16string& text, std::integral auto number) {
  text += platform::DecimalText(static_cast<long long>(number));
}
// Texts and whole numbers, one after another.
template <class... Parts>
std::u16string TextOf(const Parts&... parts) {
  std::u16string text;
  (AppendPart(text, parts), ...);
  return text;
}

class Report {
 public:
  explicit Report(std::size_t limit) : limit_(limit) {}

  void Error(std::u16string place, std::u16string text) {
    Add({std::move(place), std::move(text), true});
  }
  void Loss(std::u16string place, std::u16string text) {
    Add({std::move(place), std::move(text), true, true});
  }
  void Warning(std::u16string place, std::u16string text) {
    Add({std::move(place), std::move(text), false});
  }
  // No more errors are taken: whoever walks through a file stops. Warnings end no check.
  bool IsFull() const { return errors_ >= limit_; }
  std::vector<Fault> Take();

 private:
  void Add(Fault fault) {
    std::size_t& count = fault.isError ? errors_ : warnings_;
    if (count >= limit_) return;
    ++count;
    faults_.push_back(std::move(fault));
  }

  std::size_t limit_;
  std::size_t errors_ = 0;
  std::size_t warnings_ = 0;
  std::vector<Fault> faults_;
};

}  // namespace zimbrat::jet::check
