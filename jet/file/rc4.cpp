#include "jet/file/rc4.h"

#include <array>
#include <numeric>
#include <utility>

namespace zimbrat::jet {

// Whole words as cells: written bytes that are read again at once would make the processor wait.
void Rc4(std::uint32_t key, Bytes bytes) {
  std::array<std::uint32_t, 256> state;
  std::iota(state.begin(), state.end(), 0u);
  std::uint32_t j = 0;
  for (std::uint32_t i = 0; i < 256; ++i) {
    j = (j + state[i] + (key >> (8 * (i % 4)))) & 0xFF;
    std::swap(state[i], state[j]);
  }
  std::uint32_t i = 0;
  j = 0;
  for (std::byte& byte : bytes) {
    i = (i + 1) & 0xFF;
    const std::uint32_t a = state[i];
    j = (j + a) & 0xFF;
    const std::uint32_t b = state[j];
    state[i] = b;
    state[j] = a;
    byte ^= static_cast<std::byte>(state[(a + b) & 0xFF]);
  }
}

}  // namespace zimbrat::jet
