#include "jet/file/sorter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zimbrat::jet {

namespace {

constexpr std::size_t kMostMemory = 4 << 20;   // bytes of records before a run is set aside
constexpr std::size_t kMergeMemory = 8 << 20;   // bytes of all runs' buffers together
constexpr std::size_t kSizeRunHead = 8;         // of a record in a run: size of key, size of payload

bool IsLess(ConstBytes a, ConstBytes b) {
  return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end());
}

}  // namespace

void Sorter::Add(ConstBytes key, ConstBytes payload) {
  if (memory_.size() + key.size() + payload.size() + records_.size() * sizeof(Record) > kMostMemory) StoreRun();
  records_.push_back({memory_.size(), static_cast<std::uint32_t>(key.size()),
                      static_cast<std::uint32_t>(payload.size())});
  memory_.insert(memory_.end(), key.begin(), key.end());
  memory_.insert(memory_.end(), payload.begin(), payload.end());
  ++count_;
}

ConstBytes Sorter::KeyOf(const Record& record) const {
  return ConstBytes(memory_).subspan(record.offset, record.keySize);
}

ConstBytes Sorter::KeyOf(const Run& run) const {
  return ConstBytes(run.buffer).subspan(run.place + kSizeRunHead, run.keySize);
}

void Sorter::SortMemory() {
  // By offset where keys are equal: that is the order of arrival, and needs no room besides.
  std::sort(records_.begin(), records_.end(), [this](const Record& a, const Record& b) {
    const ConstBytes left = KeyOf(a), right = KeyOf(b);
    if (IsLess(left, right)) return true;
    // Records without a byte share their offset with the next.
    return !IsLess(right, left) && std::pair(a.offset, a.payloadSize) < std::pair(b.offset, b.payloadSize);
  });
}

void Sorter::StoreRun() {
  if (records_.empty()) return;
  SortMemory();
  Run run;
  run.next = scratch_.Size();
  for (const Record& record : records_) {
    std::array<std::byte, kSizeRunHead> head;
    Put32(head, 0, record.keySize);
    Put32(head, 4, record.payloadSize);
    scratch_.Append(head);
    scratch_.Append(ConstBytes(memory_).subspan(record.offset, record.keySize + record.payloadSize));
  }
  run.end = scratch_.Size();
  runs_.push_back(std::move(run));
  records_.clear();
  memory_.clear();
}

bool Sorter::Next() {
  if (!started_) {
    started_ = true;
    if (runs_.empty()) {
      SortMemory();
    } else {
      StartMerge();
    }
  }
  return runs_.empty() ? NextInMemory() : NextMerged();
}

bool Sorter::NextInMemory() {
  if (position_ == records_.size()) return false;
  const Record& record = records_[position_++];
  key_ = KeyOf(record);
  payload_ = ConstBytes(memory_).subspan(record.offset + record.keySize, record.payloadSize);
  return true;
}

void Sorter::StartMerge() {
  StoreRun();
  memory_ = {};
  records_ = {};
  bufferSize_ = std::max<std::size_t>(kMergeMemory / runs_.size(), kPageSize);
  for (std::size_t i = 0; i < runs_.size(); ++i) {
    if (Advance(i)) heap_.push_back(i);
  }
  std::make_heap(heap_.begin(), heap_.end(), [this](std::size_t a, std::size_t b) { return ComesLater(a, b); });
}

// Equal keys: the earlier run holds what came earlier.
bool Sorter::ComesLater(std::size_t a, std::size_t b) const {
  const ConstBytes left = KeyOf(runs_[a]), right = KeyOf(runs_[b]);
  if (IsLess(right, left)) return true;
  return !IsLess(left, right) && a > b;
}

// At least `size` bytes from the run's place on, or all that are left.
void Sorter::Fill(Run& run, std::size_t size) {
  if (run.buffer.size() - run.place >= size || run.next == run.end) return;
  run.buffer.erase(run.buffer.begin(), run.buffer.begin() + static_cast<std::ptrdiff_t>(run.place));
  run.place = 0;
  const std::size_t have = run.buffer.size();
  const std::size_t wanted = std::max(size, bufferSize_) - have;
  const std::size_t part = static_cast<std::size_t>(std::min<std::uint64_t>(wanted, run.end - run.next));
  run.buffer.resize(have + part);
  scratch_.Read(run.next, Bytes(run.buffer).subspan(have));
  run.next += part;
}

// To the run's next record; false behind the last.
bool Sorter::Advance(std::size_t number) {
  Run& run = runs_[number];
  if (!run.buffer.empty()) run.place += kSizeRunHead + run.keySize + run.payloadSize;
  Fill(run, kSizeRunHead);
  if (run.place == run.buffer.size()) return false;
  run.keySize = Get32(run.buffer, run.place);
  run.payloadSize = Get32(run.buffer, run.place + 4);
  Fill(run, kSizeRunHead + run.keySize + run.payloadSize);
  return true;
}

bool Sorter::NextMerged() {
  const auto later = [this](std::size_t a, std::size_t b) { return ComesLater(a, b); };
  if (position_ != 0 && !heap_.empty()) {  // the top was handed out before
    std::pop_heap(heap_.begin(), heap_.end(), later);
    if (Advance(heap_.back())) {
      std::push_heap(heap_.begin(), heap_.end(), later);
    } else {
      heap_.pop_back();
    }
  }
  if (heap_.empty()) return false;
  position_ = 1;
  const Run& run = runs_[heap_.front()];
  key_ = KeyOf(run);
  payload_ = ConstBytes(run.buffer).subspan(run.place + kSizeRunHead + run.keySize, run.payloadSize);
  return true;
}

}  // namespace zimbrat::jet
