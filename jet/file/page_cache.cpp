#include "jet/file/page_cache.h"

namespace zimbrat::jet {

CachedPage* PageCache::Find(PageNumber page) {
  if (page >= places_.size() || places_[page] == 0) return nullptr;
  CachedPage& found = *frames_[places_[page] - 1];
  found.wasUsed = true;
  return &found;
}

// The hand goes round; who was used since it came by stays for another round.
CachedPage* PageCache::ChooseVictim() {
  for (std::size_t seen = 0; seen < 2 * frames_.size(); ++seen) {
    CachedPage& page = *frames_[hand_];
    hand_ = (hand_ + 1) % frames_.size();
    if (!page.isPresent || page.pins != 0) continue;
    if (!page.wasUsed) return &page;
    page.wasUsed = false;
  }
  return nullptr;
}

CachedPage& PageCache::Add(PageNumber page) {
  if (page >= places_.size()) places_.resize(std::size_t{page} + page / 2 + 1);
  if (free_.empty()) {
    // So that Remove cannot fail.
    if (free_.capacity() <= frames_.size()) free_.reserve(2 * frames_.size() + 1);
    auto frame = std::make_unique<CachedPage>();
    frame->place = static_cast<std::uint32_t>(frames_.size() + 1);
    frames_.push_back(std::move(frame));
    free_.push_back(frames_.back().get());
  }
  CachedPage& added = *free_.back();
  free_.pop_back();
  added.number = page;
  added.pins = 0;
  added.isPresent = added.wasUsed = true;
  added.dirty = false;
  added.keptBy = 0;
  places_[page] = added.place;
  return added;
}

void PageCache::Remove(CachedPage& page) noexcept {
  places_[page.number] = 0;
  page.isPresent = false;
  free_.push_back(&page);
}

}  // namespace zimbrat::jet
