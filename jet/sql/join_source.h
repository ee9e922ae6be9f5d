// Two sources joined: for each row of the left one the partners in the right one.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "jet/sql/row_source.h"

namespace zimbrat::jet {

struct JoinPlan {
  Conditions conditions;  // all that a pair must fulfil
  // Expressions of the left and of the right source that must be equal; none: every right row is tried.
  std::vector<std::pair<const Expression*, const Expression*>> equal;
  bool outer = false;  // a left row without partners stays, with nulls
};

class JoinedRows : public RowSource {
 public:
  JoinedRows(RowSourcePtr left, RowSourcePtr right, JoinPlan plan, const EvaluationContext& context, Pager& pager)
      : left_(std::move(left)),
        right_(std::move(right)),
        plan_(std::move(plan)),
        context_(context),
        pager_(pager),
        pulse_(pager) {}

  void Start() override;
  bool Next() override;
  std::size_t PlaceSize() const override { return left_->PlaceSize() + right_->PlaceSize(); }
  void Save(std::vector<std::byte>& place) override;
  void Load(ConstBytes& place) override;
  void SetNull() override;
  void Forget() override;

 private:
  void BuildLookup();
  void DropLookup();
  // The key of one side's row, or nothing when one of its values is null.
  bool WriteKey(bool left, std::vector<std::byte>& key) const;
  void StartPartners();
  bool NextPartner();

  RowSourcePtr left_;
  RowSourcePtr right_;
  JoinPlan plan_;
  const EvaluationContext& context_;
  Pager& pager_;
  RowPulse pulse_;
  // The right rows by the hashes of their keys: 24 bits of hash above 40 bits of position in the list.
  std::vector<std::uint64_t> lookup_;
  std::optional<PlaceList> places_;
  std::size_t candidate_ = 0;
  std::uint64_t hash_ = 0;
  bool hasLeft_ = false;
  bool hasPartner_ = false;
  std::vector<std::byte> key_;
};

}  // namespace zimbrat::jet
