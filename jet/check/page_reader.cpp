#include "page_reader.h"

#include <algorithm>
#include <utility>

#include "jet/file/errors.h"
#include "jet/file/rc4.h"

namespace zimbrat::jet::check {

namespace {
constexpr std::size_t kCachedPages = 4096;  // 16 MiB
constexpr PageNumber kPagesAhead = 8;         // read together once pages are asked for in turn
constexpr std::uint64_t kReadsBetweenPulses = 128;
}  // namespace

PageReader::PageReader(platform::File& file, std::function<void()> pulse)
    : file_(file), pulse_(std::move(pulse)) {
  size_ = file_.Size();
  const std::uint64_t pages = (size_ + kPageSize - 1) / kPageSize;
  if (pages > kMaxPages) Raise(platform::kErrDatabaseFull);
  count_ = static_cast<PageNumber>(pages);
  hasWholePages_ = size_ % kPageSize == 0;
  ahead_.resize(kPagesAhead * kPageSize);
  slots_.resize(std::min<std::size_t>(kCachedPages, std::max<std::size_t>(count_, 1)));
}

PageView PageReader::Read(PageNumber page) {
  const Slot& slot = SlotOf(page);
  if (slot.page && slot.number == page) return slot.page;
  const bool isNext = page == next_ && page != 0;
  Load(page, isNext ? std::min<PageNumber>(kPagesAhead, count_ - page) : 1);
  return SlotOf(page).page;
}

void PageReader::Load(PageNumber first, PageNumber count) {
  const std::uint64_t offset = std::uint64_t{first} * kPageSize;
  const Bytes bytes = Bytes(ahead_).first(count * kPageSize);
  const std::size_t have = file_.ReadAt(offset, bytes);
  // What the disk failed to give must not pass for damage.
  if (have < std::min<std::uint64_t>(bytes.size(), size_ - offset)) Raise(platform::kErrDiskIo);
  std::fill(bytes.begin() + static_cast<std::ptrdiff_t>(have), bytes.end(), std::byte{0});
  if (first != 0) CodePages(key_, first, bytes);
  for (PageNumber i = 0; i < count; ++i) {
    auto page = std::make_shared_for_overwrite<PageBytes>();
    std::copy_n(bytes.begin() + i * kPageSize, kPageSize, page->begin());
    SlotOf(first + i) = {first + i, std::move(page)};
  }
  next_ = first + count;
  if (pulse_ && (reads_ += count) >= kReadsBetweenPulses) {
    reads_ = 0;
    pulse_();
  }
}

}  // namespace zimbrat::jet::check
