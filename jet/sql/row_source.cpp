#include "jet/sql/row_source.h"

#include <algorithm>
#include <cmath>

namespace zimbrat::jet {

bool AllHold(const Conditions& conditions, const EvaluationContext& context) {
  return std::all_of(conditions.begin(), conditions.end(), [&](const Expression* condition) {
    return IsTrue(Evaluate(*condition, context));
  });
}

bool FilteredRows::Next() {
  while (input_->Next()) {
    if (AllHold(conditions_, context_)) return true;
  }
  return false;
}

void KeptRows::Start() {
  position_ = 0;
  if (places_) return;
  places_.emplace(pager_, input_->PlaceSize());
  std::vector<std::byte> place;
  for (input_->Start(); input_->Next();) {
    place.clear();
    input_->Save(place);
    places_->Add(place);
  }
}

bool KeptRows::Next() {
  if (position_ == places_->Count()) return false;
  ConstBytes place = places_->At(position_++);
  input_->Load(place);
  return true;
}

void KeptRows::Forget() {
  places_.reset();
  input_->Forget();
}

void SortedRows::Start() {
  sorter_.emplace(pager_);
  any_ = false;
  std::vector<std::byte> key, place;
  for (input_->Start(); input_->Next();) {
    key.clear();
    place.clear();
    writeKey_(key);
    input_->Save(place);
    sorter_->Add(key, place);
  }
}

bool SortedRows::Next() {
  while (sorter_ && sorter_->Next()) {
    const ConstBytes key = sorter_->Key();
    if (onlyFirst_ && any_ && std::equal(key.begin(), key.end(), key_.begin(), key_.end())) continue;
    any_ = true;
    key_.assign(key.begin(), key.end());
    ConstBytes place = sorter_->Payload();
    input_->Load(place);
    return true;
  }
  sorter_.reset();  // whoever holds the query holds no memory for it
  return false;
}

void FirstRows::Start() {
  input_->Start();
  passed_ = 0;
  limit_ = percent_ ? std::ceil(static_cast<double>(sorted_->Count()) * count_ / 100.0) : count_;
}

bool FirstRows::Next() {
  if (passed_ < limit_) {
    if (!input_->Next()) return false;
    ++passed_;
    if (withEqual_) lastKey_ = sorted_->Key();
    return true;
  }
  return withEqual_ && limit_ > 0 && input_->Next() && sorted_->Key() == lastKey_;
}

}  // namespace zimbrat::jet
