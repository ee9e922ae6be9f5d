// The rows of one table, page by page, without the help of maps or indexes.
#pragma once

#include "checking.h"
#include "page_survey.h"
#include "row_page.h"
#include "rows.h"
#include "jet/check/rescued_row.h"

namespace zimbrat::jet::check {

class RowRescue {
 public:
  // `budget`: see RescueLongValue.
  RowRescue(Checking& check, const TableLayout& table, const RescuedRowVisit& visit,
            std::uint64_t& budget);

  // Rows in the order of their home slots; then those whose home slot is lost.
  RowCounts Run(const RowPages& pages);

 private:
  void AddMissingRows();
  bool HasTwins() const;
  std::uint64_t CountEntriesWithoutRow();
  std::vector<RowPlace> FindPlaces(ConstBytes page) const;
  void FindBorder(ConstBytes page, RowPlace& upper, RowPlace& lower) const;
  void ReadHomes(PageNumber page);
  void ReadStrays(PageNumber page);
  void FollowMove(ConstBytes pointer);
  bool TakeRow(ConstBytes bytes);
  std::optional<std::vector<std::byte>> TakeField(const ColumnLayout& column, ConstBytes field,
                                                  bool& isWhole);
  std::optional<std::vector<std::byte>> TakeLongValue(const ColumnLayout& column, ConstBytes field,
                                                      bool& isWhole);

  Checking& check_;
  const TableLayout& table_;
  const RescuedRowVisit& visit_;
  std::uint64_t& budget_;
  std::vector<PageNumber> pages_;
  std::vector<PageNumber> leaves_;
  bool areUncertain_ = false;  // rows may be missing of which nothing tells
  std::uint64_t brokenMoves_ = 0;
  RowCounts counts_;
};

}  // namespace zimbrat::jet::check
