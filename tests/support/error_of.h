// The run-time error that a piece of work raises.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace zimbrat::tests {

struct RaisedError {
  std::int32_t number = 0;  // 0 for none
  std::u16string description;
};

// An error without a text for people fails the test.
RaisedError RaisedBy(const std::function<void()>& work);

// Its number; 0 for none.
std::int32_t ErrorOf(const std::function<void()>& work);

// Whether a repair had to refuse what it had written itself: never the file's fault.
bool BlamesNewFile(std::u16string_view description);

}  // namespace zimbrat::tests
