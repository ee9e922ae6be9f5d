#include "jet/file/rc4.h"

#include <array>
#include <numeric>
#include <utility>

namespace zimbrat::jet {

void Rc4(std::uint32_t key, Bytes bytes) {
  std::array<std::uint8_t, 256> state;
  std::iota(state.begin(), state.end(), std::uint8_t{0});
  std::uint8_t j = 0;
  for (unsigned i = 0; i < 256; ++i) {
    j = static_cast<std::uint8_t>(j + state[i] + (key >> (8 * (i % 4))));
    std::swap(state[i], state[j]);
  }
  std::uint8_t i = 0;
  j = 0;
  for (std::byte& byte : bytes) {
    const std::uint8_t a = state[++i];
    j = static_cast<std::uint8_t>(j + a);
    const std::uint8_t b = state[j];
    state[i] = b;
    state[j] = a;
    byte ^= std::byte{state[static_cast<std::uint8_t>(a + b)]};
  }
}

}  // namespace zimbrat::jet
