// Using a table: reading, inserting, changing and deleting rows, with every index kept in step. What a
// row may contain (required fields, rules, relationships) is asked on the floor above; here only keys
// are checked.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "jet/file/sorter.h"
#include "jet/file/storage.h"
#include "jet/index/tree.h"
#include "jet/table/definition.h"
#include "jet/table/row_codec.h"
#include "platform/dao.h"

namespace zimbrat::jet {

// A row ready to be stored: its bytes, and for each real index its key (none where the index leaves the
// row out).
struct PreparedRow {
  struct Key {
    std::optional<std::vector<std::byte>> bytes;
    bool isKept = false;  // that of the row it replaces; `bytes` are not made then
  };
  std::vector<std::byte> bytes;
  std::vector<Key> keys;
};

// What the rows of an index have, whether it allows them or not.
struct IndexConflicts {
  bool nulls = false;
  bool duplicates = false;  // those of rows that are null in all columns do not count
};

class Table {
 public:
  Table(Storage storage, PageNumber page, std::u16string name);

  PageNumber Page() const { return page_; }
  const std::u16string& Name() const { return name_; }
  void SetName(std::u16string_view name) { name_ = name; }
  const Storage& GetStorage() const { return storage_; }
  // Read anew when a rollback may have changed it.
  const TableDefinition& Definition();
  // To be called when somebody rewrote the definition.
  void Reload();

  RowFields Read(RowPointer home);
  // Nothing when no row lives there (any more).
  std::optional<RowFields> FindRow(RowPointer home);

  // Long values are loaded and stored on the way.
  dao::Value ValueOf(std::size_t column, const FieldBytes& field);
  FieldBytes FieldOf(std::size_t column, const dao::Value& value);

  // Error 3047 for a row that is too long, 3058 for a null where an index forbids it, 3022 for a key that
  // is there already. `self` is the row that the new one replaces.
  PreparedRow Prepare(const RowFields& fields, const RowFields* self = nullptr);
  RowPointer Insert(const PreparedRow& row);
  void Update(RowPointer home, const RowFields& former, const PreparedRow& row);
  // Frees the row's long values too.
  void Delete(RowPointer home, const RowFields& former);

  // The key of a row in a real index; none when the index leaves the row out.
  std::optional<std::vector<std::byte>> KeyOf(std::size_t realIndex, const RowFields& fields);
  IndexTree Tree(std::size_t realIndex);

  // The next value of the counter column, and the highest one given so far.
  std::int32_t NextCounter();
  void NoteCounter(std::int32_t value);

  // Every row into an index that has none yet. Error 3022 or 3058.
  void FillIndex(std::size_t realIndex);
  // The same, whatever the index asks for.
  IndexConflicts FillIndexAsItIs(std::size_t realIndex);

 private:
  friend class RowScan;

  UsageMap OwnedPages();
  UsageMap FreePages();
  void ChangeRowCount(std::int32_t by);
  void PutHeadNumber(std::size_t offset, std::uint32_t value);
  void PutDifferentKeys(std::size_t realIndex);
  PageRef PageForRow(std::size_t size);
  PageRef GetDataPage(PageNumber number);
  bool AreEqualIn(const RealIndex& index, const RowFields& a, const RowFields& b);
  std::size_t CountNulls(const RealIndex& index, const RowFields& fields);
  // Where a moved row lives; null for one that lives in its home slot.
  RowPointer FindFarPlace(RowPointer home);
  RowPointer StoreBytes(ConstBytes bytes, std::uint16_t flags);
  void EraseBytes(RowPointer place);
  void RewriteBytes(RowPointer home, ConstBytes bytes);
  bool TryRewriteInPlace(RowPointer place, ConstBytes bytes);
  void AddKey(std::size_t realIndex, ConstBytes key, RowPointer home);
  void RaiseDuplicate(std::size_t realIndex);
  const std::u16string& IndexName(std::size_t realIndex);
  bool BuildFrom(Sorter& sorter, std::size_t realIndex);

  Storage storage_;
  PageNumber page_;
  std::u16string name_;
  TableDefinition definition_;
  std::uint64_t generation_ = 0;
  PageNumber lastUsed_ = 0;  // data page of the last insert
};

// All rows of a table in the order of its pages. Rows may be deleted, and changed in place, meanwhile.
class RowScan {
 public:
  explicit RowScan(Table& table) : table_(table) {}
  // False after the last row.
  bool Next();
  RowPointer Place() const { return place_; }
  const RowFields& Fields() const { return fields_; }

 private:
  bool NextPage();

  Table& table_;
  std::vector<RowPointer> batch_;
  std::size_t position_ = 0;
  PageNumber nextPage_ = 0;
  RowPointer place_;
  RowFields fields_;
};

}  // namespace zimbrat::jet
