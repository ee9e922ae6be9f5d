// The run-time error that a piece of work raises.
#pragma once

#include <cstdint>
#include <functional>

namespace zimbrat::tests {

// Its number; 0 for none. An error without a text for people fails the test.
std::int32_t ErrorOf(const std::function<void()>& work);

}  // namespace zimbrat::tests
