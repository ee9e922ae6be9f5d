// The rows of a table: all of them, or those that an index leads to.
#pragma once

#include <memory>
#include <optional>

#include "jet/sql/index_range.h"
#include "jet/sql/row_source.h"

namespace zimbrat::jet {

class TableSource : public LeafSource {
 public:
  TableSource(std::shared_ptr<Table> table, const EvaluationContext& context)
      : table_(std::move(table)), context_(context), pulse_(table_->GetStorage().pager) {}

  const std::shared_ptr<Table>& GetTable() const { return table_; }
  RowPointer Place() const { return place_; }
  // Whether the row of a place that was loaded is still there.
  bool Exists();
  // The row as it is stored. Error 3021 when it is gone.
  const RowFields& Fields();

  // Looks for an index that the conditions lead to; they are asked of every row all the same. False when there
  // is none.
  bool UseIndex(const Conditions& conditions, const OwnColumn& column, const IsKnown& isKnown);

  void Start() override;
  bool Next() override;
  std::size_t PlaceSize() const override { return sizeof(std::uint32_t); }
  void Save(std::vector<std::byte>& place) override;
  void Load(ConstBytes& place) override;
  void SetNull() override { SetPlace({}); }
  dao::Value ValueAt(std::size_t column) override;

 private:
  void SetPlace(RowPointer place);

  std::shared_ptr<Table> table_;
  const EvaluationContext& context_;
  RowPulse pulse_;
  std::optional<IndexRange> range_;
  bool usesRange_ = false;
  std::optional<RowScan> scan_;
  RowPointer place_;
  const RowFields* fields_ = nullptr;  // of the scan, or read_
  std::optional<RowFields> read_;
};

}  // namespace zimbrat::jet
