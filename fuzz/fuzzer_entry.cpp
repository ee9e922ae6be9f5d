// One target as libFuzzer calls it; which one says the build (ZIMBRAT_TARGET).
#include <cstddef>

#include "targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zimbrat::fuzz::ZIMBRAT_TARGET(zimbrat::fuzz::Input(data, size));
  return 0;
}
