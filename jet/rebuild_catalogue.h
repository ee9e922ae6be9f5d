// The rows of MSysObjects, MSysACEs and MSysQueries: those of the former file, with the new pages
// of its tables, and those that must be there.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "rebuilt_tables.h"
#include "system_rows.h"
#include "jet/catalog/database_file.h"
#include "jet/check/rescue.h"

namespace zimbrat::jet {

class CatalogueRebuild {
 public:
  CatalogueRebuild(check::Rescue& source, DatabaseFile& target, RebuiltTables& tables)
      : source_(source), target_(target), tables_(tables) {}

  // Before the tables are made: which ones the former catalogue names.
  void ReadTables();
  // Whether there was anything at all in it.
  bool HasRows() const { return hasRows_; }
  // Whether some of it is lost, and with it the names of tables.
  bool HasLostRows() const { return hasLostRows_; }
  // After. A report for each system table written. The target's catalogue must not have been used
  // yet.
  std::vector<RepairedTable> CopyRows();
  // Tables that the former catalogue does not name. Through the target's catalogue from here on.
  void AddFoundTables();
  // For tables and relationships.
  void AddMissingAccessEntries();

 private:
  void CopyStandardObjects();
  RowFate CopyObject(const check::TableLayout& layout, const check::RescuedRow& row,
                     Table& objects);
  RowFate CopyAccessEntry(const check::TableLayout& layout, const check::RescuedRow& row,
                          Table& aces);
  void StoreObject(const check::TableLayout& layout, const check::RescuedRow& row, Table& objects,
                   std::int32_t id, std::u16string_view name);
  void NoteOwner(const check::TableLayout& layout, const check::RescuedRow& row);
  void NoteEntryOfAdmin(const check::TableLayout& layout, const check::RescuedRow& row);

  check::Rescue& source_;
  DatabaseFile& target_;
  RebuiltTables& tables_;
  bool hasRows_ = false;
  bool hasLostRows_ = false;
  std::set<std::int32_t> standardObjects_;  // that were copied
  std::optional<std::array<std::uint8_t, 2>> sidMask_;
};

}  // namespace zimbrat::jet
