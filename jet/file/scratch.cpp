#include "jet/file/scratch.h"

#include <algorithm>
#include <array>

namespace zimbrat::jet {

namespace {
constexpr std::size_t kInMemory = 1 << 20;  // bytes before the first block goes to the file
constexpr std::size_t kMostTail = 64 * kPageSize;
}  // namespace

std::uint64_t Scratch::Append(ConstBytes bytes) {
  const std::uint64_t offset = Size();
  tail_.insert(tail_.end(), bytes.begin(), bytes.end());
  if (tail_.size() >= (file_ ? kMostTail : kInMemory)) StoreBlocks();
  return offset;
}

void Scratch::StoreBlocks() {
  if (!file_) file_ = pager_.OpenTemporary();
  const std::size_t whole = tail_.size() / kPageSize * kPageSize;
  const Bytes blocks = Bytes(tail_).first(whole);
  for (std::size_t at = 0; at < whole; at += kPageSize) {
    pager_.Code(static_cast<PageNumber>((stored_ + at) / kPageSize + 1), blocks.subspan(at, kPageSize));
  }
  file_->WriteAt(stored_, blocks);
  stored_ += whole;
  tail_.erase(tail_.begin(), tail_.begin() + static_cast<std::ptrdiff_t>(whole));
}

void Scratch::Read(std::uint64_t offset, Bytes bytes) {
  if (offset < stored_) {
    const std::size_t part = static_cast<std::size_t>(std::min<std::uint64_t>(bytes.size(), stored_ - offset));
    ReadStored(offset, bytes.first(part));
    bytes = bytes.subspan(part);
    offset += part;
  }
  if (bytes.empty()) return;
  const auto start = tail_.begin() + static_cast<std::ptrdiff_t>(offset - stored_);
  std::copy_n(start, bytes.size(), bytes.begin());
}

void Scratch::ReadStored(std::uint64_t offset, Bytes bytes) {
  std::array<std::byte, kPageSize> block;
  while (!bytes.empty()) {
    const std::uint64_t number = offset / kPageSize;
    file_->ReadAt(number * kPageSize, block);
    pager_.Code(static_cast<PageNumber>(number + 1), block);
    const std::size_t from = static_cast<std::size_t>(offset % kPageSize);
    const std::size_t part = std::min(bytes.size(), kPageSize - from);
    std::copy_n(block.begin() + static_cast<std::ptrdiff_t>(from), part, bytes.begin());
    bytes = bytes.subspan(part);
    offset += part;
  }
}

}  // namespace zimbrat::jet
