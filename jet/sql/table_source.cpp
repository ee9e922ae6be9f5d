#include "jet/sql/table_source.h"

#include <array>

#include "jet/file/errors.h"

namespace zimbrat::jet {

bool TableSource::UseIndex(const Conditions& conditions, const OwnColumn& column, const IsKnown& isKnown) {
  range_ = IndexRange::Choose(*table_, conditions, column, isKnown);
  return range_.has_value();
}

void TableSource::SetPlace(RowPointer place) {
  place_ = place;
  fields_ = nullptr;
  read_.reset();
}

void TableSource::Start() {
  SetPlace({});
  scan_.reset();
  usesRange_ = range_ && range_->Start(*table_, context_);
  if (!usesRange_) scan_.emplace(*table_);
}

bool TableSource::Next() {
  pulse_.Count();
  SetPlace({});
  if (usesRange_) {
    const std::optional<RowPointer> row = range_->Next();
    if (row) SetPlace(*row);
    return row.has_value();
  }
  if (!scan_->Next()) return false;
  place_ = scan_->Place();
  fields_ = &scan_->Fields();
  return true;
}

void TableSource::Save(std::vector<std::byte>& place) {
  std::array<std::byte, sizeof(std::uint32_t)> packed;
  Put32(packed, 0, place_.Packed());
  place.insert(place.end(), packed.begin(), packed.end());
}

void TableSource::Load(ConstBytes& place) {
  SetPlace(RowPointer::FromPacked(Get32(place, 0)));
  place = place.subspan(sizeof(std::uint32_t));
}

bool TableSource::Exists() {
  if (place_.IsNull()) return false;
  if (!fields_) {
    read_ = table_->FindRow(place_);
    if (read_) fields_ = &*read_;
  }
  return fields_ != nullptr;
}

const RowFields& TableSource::Fields() {
  if (!Exists()) Raise(platform::kErrNoCurrentRecord);
  return *fields_;
}

dao::Value TableSource::ValueAt(std::size_t column) {
  if (place_.IsNull()) return dao::Null{};
  return table_->ValueOf(column, Fields()[column]);
}

}  // namespace zimbrat::jet
