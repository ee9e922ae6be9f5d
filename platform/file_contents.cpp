#include "platform/file_contents.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

#include <algorithm>
#include <span>
#include <vector>

namespace zimbrat::platform {
namespace {

constexpr std::size_t kBlock = 1 << 20;

}  // namespace

void CopyContents(File& from, File& to, const std::function<void()>& pulse) {
  const std::uint64_t size = from.Size();
  std::vector<std::byte> block(static_cast<std::size_t>(std::min<std::uint64_t>(size, kBlock)));
  for (std::uint64_t done = 0; done < size;) {
    const std::size_t count = from.ReadAt(done, block);
    if (count == 0) throw OwnError(kErrDeviceIo);
    to.WriteAt(done, std::span<const std::byte>(block).first(count));
    done += count;
    if (pulse) pulse();
  }
}

bool HaveSameContents(File& a, File& b, const std::function<void()>& pulse) {
  const std::uint64_t size = a.Size();
  if (b.Size() != size) return false;
  std::vector<std::byte> first(static_cast<std::size_t>(std::min<std::uint64_t>(size, kBlock)));
  std::vector<std::byte> second(first.size());
  for (std::uint64_t done = 0; done < size; done += first.size()) {
    const std::size_t count = a.ReadAt(done, first);
    if (count == 0 || b.ReadAt(done, second) != count) return false;
    if (!std::equal(first.begin(), first.begin() + static_cast<std::ptrdiff_t>(count),
                    second.begin())) {
      return false;
    }
    if (pulse) pulse();
  }
  return true;
}

}  // namespace zimbrat::platform
