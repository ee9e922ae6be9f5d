#include "page_reader.h"

#include <algorithm>
#include <utility>

#include "jet/file/errors.h"
#include "jet/file/rc4.h"

namespace zimbrat::jet::check {

namespace {
constexpr std::size_t kCachedPages = 4096;  // 16 MiB
constexpr std::uint64_t kReadsBetweenPulses = 128;
}  // namespace

PageReader::PageReader(platform::File& file, std::function<void()> pulse)
    : file_(file), pulse_(std::move(pulse)) {
  size_ = file_.Size();
  const std::uint64_t pages = (size_ + kPageSize - 1) / kPageSize;
  if (pages > kMaxPages) Raise(platform::kErrDatabaseFull);
  count_ = static_cast<PageNumber>(pages);
  hasWholePages_ = size_ % kPageSize == 0;
  slots_.resize(std::min<std::size_t>(kCachedPages, std::max<std::size_t>(count_, 1)));
}

PageView PageReader::Read(PageNumber page) {
  Slot& slot = slots_[page % slots_.size()];
  if (slot.page && slot.number == page) return slot.page;
  auto bytes = std::make_shared<PageBytes>();
  const std::uint64_t offset = std::uint64_t{page} * kPageSize;
  // What the disk failed to give must not pass for damage.
  if (file_.ReadAt(offset, *bytes) < std::min<std::uint64_t>(kPageSize, size_ - offset))
    Raise(platform::kErrDiskIo);
  if (key_ != 0 && page != 0) Rc4(key_ ^ page, *bytes);
  if (pulse_ && ++reads_ % kReadsBetweenPulses == 0) pulse_();
  slot = {page, std::move(bytes)};
  return slot.page;
}

}  // namespace zimbrat::jet::check
