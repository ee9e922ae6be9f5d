// Rows one after another: what a query reads from, and what its clauses make of that. A source that works on
// the rows of others has them in its hands.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "jet/file/sorter.h"
#include "jet/sql/expression.h"
#include "jet/sql/place_list.h"

namespace zimbrat::jet {

// Rows of cached pages never reach the disk, where the pulse is given otherwise.
class RowPulse {
 public:
  explicit RowPulse(Pager& pager) : pager_(pager) {}
  void Count() {
    constexpr std::uint32_t kRowsBetween = 4096;
    if (++rows_ % kRowsBetween == 0 && pager_.pulse) pager_.pulse();
  }

 private:
  Pager& pager_;
  std::uint32_t rows_ = 0;
};

class RowSource {
 public:
  virtual ~RowSource() = default;

  // Before the first row; may be called again at any time.
  virtual void Start() = 0;
  virtual bool Next() = 0;

  // Where the current row is found again, appended to `place`: always PlaceSize() bytes.
  virtual std::size_t PlaceSize() const = 0;
  virtual void Save(std::vector<std::byte>& place) = 0;
  // Takes its part off `place` and makes that row the current one.
  virtual void Load(ConstBytes& place) = 0;
  // The row of an outer join that has no partner here.
  virtual void SetNull() = 0;
  // Rows kept from an earlier run no longer hold: a query around this one came to another row.
  virtual void Forget() {}
};
using RowSourcePtr = std::unique_ptr<RowSource>;

// A source with columns of its own.
class LeafSource : public RowSource {
 public:
  virtual dao::Value ValueAt(std::size_t column) = 0;
};

// Conditions that must all hold.
using Conditions = std::vector<const Expression*>;
bool AllHold(const Conditions& conditions, const EvaluationContext& context);

// One row without columns: a query without FROM.
class SingleRow : public RowSource {
 public:
  void Start() override { done_ = false; }
  bool Next() override { return !std::exchange(done_, true); }
  std::size_t PlaceSize() const override { return 0; }
  void Save(std::vector<std::byte>&) override {}
  void Load(ConstBytes&) override {}
  void SetNull() override {}

 private:
  bool done_ = false;
};

// Passes everything on to another source.
class WrappedSource : public RowSource {
 public:
  explicit WrappedSource(RowSourcePtr input) : input_(std::move(input)) {}
  void Start() override { input_->Start(); }
  bool Next() override { return input_->Next(); }
  std::size_t PlaceSize() const override { return input_->PlaceSize(); }
  void Save(std::vector<std::byte>& place) override { input_->Save(place); }
  void Load(ConstBytes& place) override { input_->Load(place); }
  void SetNull() override { input_->SetNull(); }
  void Forget() override { input_->Forget(); }

 protected:
  RowSourcePtr input_;
};

// The rows for which the conditions hold.
class FilteredRows : public WrappedSource {
 public:
  FilteredRows(RowSourcePtr input, Conditions conditions, const EvaluationContext& context)
      : WrappedSource(std::move(input)), conditions_(std::move(conditions)), context_(context) {}
  bool Next() override;

 private:
  Conditions conditions_;
  const EvaluationContext& context_;
};

// Rows that are asked for again and again: found once, their places kept.
class KeptRows : public WrappedSource {
 public:
  KeptRows(RowSourcePtr input, Pager& pager) : WrappedSource(std::move(input)), pager_(pager) {}
  void Start() override;
  bool Next() override;
  void Forget() override;

 private:
  Pager& pager_;
  std::optional<PlaceList> places_;
  std::uint64_t position_ = 0;
};

// Writes the key of the current row.
using KeyWriter = std::function<void(std::vector<std::byte>& key)>;

// In the order of their keys; of equal keys as they came, or only the first.
class SortedRows : public WrappedSource {
 public:
  SortedRows(RowSourcePtr input, Pager& pager, KeyWriter writeKey, bool onlyFirst)
      : WrappedSource(std::move(input)), pager_(pager), writeKey_(std::move(writeKey)), onlyFirst_(onlyFirst) {}
  void Start() override;
  bool Next() override;
  // Between Start and the end.
  std::uint64_t Count() const { return sorter_->Count(); }
  // Of the current row.
  const std::vector<std::byte>& Key() const { return key_; }

 private:
  Pager& pager_;
  KeyWriter writeKey_;
  bool onlyFirst_;
  std::optional<Sorter> sorter_;
  std::vector<std::byte> key_;
  bool any_ = false;
};

// The first rows. Behind SortedRows also those that equal the last one.
class FirstRows : public WrappedSource {
 public:
  FirstRows(RowSourcePtr input, double count) : WrappedSource(std::move(input)), count_(count) {}
  // `sorted` is the input.
  FirstRows(std::unique_ptr<SortedRows> sorted, double count, bool percent, bool withEqual)
      : WrappedSource(nullptr), sorted_(sorted.get()), count_(count), percent_(percent), withEqual_(withEqual) {
    input_ = std::move(sorted);
  }
  void Start() override;
  bool Next() override;

 private:
  SortedRows* sorted_ = nullptr;
  double count_;
  bool percent_ = false;
  bool withEqual_ = false;
  double limit_ = 0;
  double passed_ = 0;
  std::vector<std::byte> lastKey_;
};

}  // namespace zimbrat::jet
