// One look at every page of a file that may be damaged: which pages hold rows, and of which table,
// and where definitions begin. What a page says of itself counts first, because the maps may be
// damaged too; where its rows speak against that, the maps decide.
#pragma once

#include <optional>
#include <vector>

#include "checking.h"
#include "page_claims.h"
#include "jet/check/table_layout.h"

namespace zimbrat::jet::check {

struct RowPages {
  std::vector<PageNumber> pages;   // ascending
  std::vector<PageNumber> leaves;  // of the table's indexes, as they say, ascending; not free ones
  // Rows may be missing: the table's map is unreadable, or lists pages that hold no rows of it, or the file is cut.
  bool areUncertain = false;
};

class PageSurvey {
 public:
  PageSurvey(Checking& check, const LayoutSource& layoutOf);

  // The pages with rows of a table: those that name it, without what the map of free pages knows as
  // free, and those that its own map lists although their header is damaged.
  RowPages PagesOf(const TableLayout& table) const;
  // Pages that name a table and are not free, for a table whose map nobody knows.
  std::vector<PageNumber> PagesInUseNaming(PageNumber table) const;
  // First pages of definitions that are not free, ascending.
  const std::vector<PageNumber>& Definitions() const { return definitions_; }

 private:
  void ReadFreePages();
  void ReadPages(const LayoutSource& layoutOf);
  bool IsFree(PageNumber page) const { return hasFreePages_ && free_[page]; }
  bool HaveAllRows(const TableLayout& table, const std::vector<PageNumber>& pages) const;
  bool IsDamagedPageOf(PageNumber page, PageNumber table) const;
  bool IsDefinition(PageNumber page) const;

  Checking& check_;
  bool hasFreePages_ = false;  // the map of free pages can be believed
  std::vector<bool> free_;
  std::vector<NamedPage> named_;   // pages of rows, sorted
  std::vector<NamedPage> leaves_;  // pages of index entries, sorted
  std::vector<PageNumber> definitions_;
};

}  // namespace zimbrat::jet::check
