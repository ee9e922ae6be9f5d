// What every part of a check works with.
#pragma once

#include <string>

#include "census.h"
#include "jet/check/check.h"
#include "page_reader.h"
#include "report.h"

namespace zimbrat::jet::check {

// In a set of rows: the page itself. No page has so many rows.
inline constexpr std::uint8_t kWholePage = 0xFF;

struct Checking {
  Checking(platform::File& file, const CheckOptions& given)
      : options(given),
        pages(file, given.pulse),
        report(given.maxFaults),
        census(pages.Count()),
        heldRows(pages.Count()),
        indexedRows(pages.Count()) {}

  const CheckOptions& options;
  PageReader pages;
  Report report;
  PageCensus census;
  RowSet heldRows;  // rows that something points at, one thing each: maps, moved rows, long values
  RowSet indexedRows;  // by the index under check

  void Error(const std::u16string& place, std::u16string text) {
    report.Error(place, std::move(text));
  }
  void PageError(const std::u16string& place, PageNumber page, std::u16string text) {
    report.Error(TextOf(place, u", strona ", page), std::move(text));
  }
  // For what cannot be read.
  void Loss(const std::u16string& place, std::u16string text) {
    report.Loss(place, std::move(text));
  }
  void PageLoss(const std::u16string& place, PageNumber page, std::u16string text) {
    report.Loss(TextOf(place, u", strona ", page), std::move(text));
  }
  // For what nothing refers to: a warning where the options ask for it.
  void Unused(std::u16string place, std::u16string text) {
    if (options.reportUnused) report.Warning(std::move(place), std::move(text));
  }
  // The live rows of a page that nothing points at.
  void NameUnusedRows(const std::u16string& place, PageNumber page);
  // Claims a page that something names; reports what speaks against it.
  bool Claim(const std::u16string& place, PageNumber page, const PageOwner& owner);
};

}  // namespace zimbrat::jet::check
