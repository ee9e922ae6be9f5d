#include "join_source.h"

#include <algorithm>

#include "value_codec.h"

namespace zimbrat::jet {

namespace {
constexpr int kPositionBits = 40;
constexpr std::uint64_t kPositionMask = (std::uint64_t{1} << kPositionBits) - 1;
}  // namespace

bool JoinedRows::WriteKey(bool left, std::vector<std::byte>& key) const {
  key.clear();
  for (const auto& [ofLeft, ofRight] : plan_.equal) {
    const dao::Value value = Evaluate(left ? *ofLeft : *ofRight, context_);
    if (dao::IsNull(value)) return false;
    AppendSortKey(value, false, key);
  }
  return true;
}

void JoinedRows::BuildLookup() {
  places_.emplace(pager_, right_->PlaceSize());
  lookup_.clear();
  std::vector<std::byte> place;
  for (right_->Start(); right_->Next();) {
    if (!WriteKey(false, key_)) continue;
    place.clear();
    right_->Save(place);
    lookup_.push_back(std::uint64_t{HashOf(key_)} << kPositionBits | places_->Count());
    places_->Add(place);
  }
  std::sort(lookup_.begin(), lookup_.end());
}

void JoinedRows::Start() {
  if (!plan_.equal.empty() && !places_) BuildLookup();
  left_->Start();
  hasLeft_ = false;
}

void JoinedRows::DropLookup() {
  places_.reset();
  lookup_ = {};
}

void JoinedRows::Forget() {
  DropLookup();
  left_->Forget();
  right_->Forget();
}

void JoinedRows::StartPartners() {
  hasPartner_ = false;
  if (plan_.equal.empty()) return right_->Start();
  candidate_ = lookup_.size();
  if (!WriteKey(true, key_)) return;
  hash_ = std::uint64_t{HashOf(key_)} << kPositionBits;
  const auto first = std::lower_bound(lookup_.begin(), lookup_.end(), hash_);
  candidate_ = static_cast<std::size_t>(first - lookup_.begin());
}

bool JoinedRows::NextPartner() {
  if (plan_.equal.empty()) return right_->Next();
  if (candidate_ == lookup_.size() || (lookup_[candidate_] & ~kPositionMask) != hash_) return false;
  ConstBytes place = places_->At(lookup_[candidate_++] & kPositionMask);
  right_->Load(place);
  return true;
}

bool JoinedRows::Next() {
  while (true) {
    if (!hasLeft_) {
      if (!left_->Next()) {
        DropLookup();
        return false;
      }
      hasLeft_ = true;
      StartPartners();
    }
    while (NextPartner()) {
      pulse_.Count();
      if (!AllHold(plan_.conditions, context_)) continue;
      hasPartner_ = true;
      return true;
    }
    hasLeft_ = false;
    if (!plan_.outer || hasPartner_) continue;
    right_->SetNull();
    return true;
  }
}

void JoinedRows::Save(std::vector<std::byte>& place) {
  left_->Save(place);
  right_->Save(place);
}

void JoinedRows::Load(ConstBytes& place) {
  left_->Load(place);
  right_->Load(place);
}

void JoinedRows::SetNull() {
  left_->SetNull();
  right_->SetNull();
}

}  // namespace zimbrat::jet
