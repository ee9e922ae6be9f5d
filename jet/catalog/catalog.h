// The catalogue: which objects a database has (MSysObjects), who may use them (MSysACEs), their
// properties. A table's Id is the page of its definition; other objects have ids from 0x80000000 on.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "jet/catalog/properties.h"
#include "jet/file/storage.h"
#include "jet/table/table.h"
#include "platform/clock.h"

namespace zimbrat::jet {

enum class ObjectType : std::int16_t {
  Table = 1,
  Database = 2,
  Container = 3,
  OdbcLink = 4,
  Query = 5,
  Link = 6,
  Relationship = 8,
};

struct CatalogObject {
  std::int32_t id = 0;
  std::int32_t parentId = 0;
  std::int16_t type = 0;
  std::u16string name;
  std::uint32_t flags = 0;
  RowPointer row;

  bool Is(ObjectType t) const { return type == static_cast<std::int16_t>(t); }
  bool IsLink() const { return Is(ObjectType::Link) || Is(ObjectType::OdbcLink); }
  bool IsTableOrLink() const { return Is(ObjectType::Table) || IsLink(); }
  bool IsSystem() const { return (flags & 0x80000002u) != 0; }
};

// What the properties say of a column.
struct FieldRules {
  bool required = false;
  bool allowZeroLength = false;
  std::u16string defaultValue;
  std::u16string validationRule;
  std::u16string validationText;
};

inline constexpr std::int32_t kRootContainer = 0x0F000000;
inline constexpr std::uint32_t kFlagSystemObject = 0x80000000;

class Catalog {
 public:
  Catalog(Storage storage, platform::Clock& clock) : storage_(storage), clock_(clock) {}

  // Grows whenever an object may have gone: dropped, or its making undone.
  std::uint64_t Losses() const { return removals_ + storage_.pager.Generation(); }
  // In the order of the catalogue's rows. Valid until the catalogue changes.
  const std::vector<CatalogObject>& Objects();
  // Tables and links; names without regard to case, as the sort order compares.
  const CatalogObject* FindTable(std::u16string_view name);
  const CatalogObject* FindTableByPage(PageNumber page);
  const CatalogObject* FindRelationship(std::u16string_view name);
  // Whatever of that name stands among tables, links and queries.
  const CatalogObject* FindTableOrQuery(std::u16string_view name);

  // The same object for every caller, until the table is dropped.
  std::shared_ptr<Table> Open(PageNumber page);

  void AddTable(std::u16string_view name, PageNumber page, const PropertyBlob& properties);
  void AddRelationship(std::u16string_view name);
  // What the container hands down, for an object that has no access entries.
  void AddMissingAccessEntries(const CatalogObject& object);
  // The row and its access entries; pages are the caller's business.
  void Remove(std::int32_t id);
  void Rename(std::int32_t id, std::u16string_view name);
  // A structure change: DateUpdate becomes now.
  void Touch(std::int32_t id);

  const PropertyBlob& Properties(std::int32_t id);
  void PutProperties(std::int32_t id, const PropertyBlob& properties);
  // One for each column of the table, in the definition's order.
  const std::vector<FieldRules>& Rules(Table& table);

  // After the table's definition was rewritten.
  void DefinitionChanged(PageNumber page);

 private:
  void Refresh();
  void Load();
  Table& SystemTable(PageNumber page);
  std::int32_t ContainerId(std::u16string_view name);
  void AddObject(CatalogObject object, const PropertyBlob& properties);
  void AddAccessEntries(std::int32_t id, std::int32_t containerId);
  void RemoveAccessEntries(std::int32_t id);
  std::vector<RowPointer> AccessEntriesOf(std::int32_t id);
  const CatalogObject& Require(std::int32_t id);
  const CatalogObject* FindById(std::int32_t id) const;
  const CatalogObject* FindByName(bool relationship, std::u16string_view name);
  void Append(CatalogObject object);
  void NoteName(const CatalogObject& object);
  void ChangeRow(const CatalogObject& object,
                 const std::vector<std::pair<std::u16string_view, dao::Value>>& values);
  dao::Binary Sid(std::uint8_t high, std::uint8_t low);

  Storage storage_;
  platform::Clock& clock_;
  bool loaded_ = false;
  std::uint64_t removals_ = 0;
  std::uint64_t generation_ = 0;
  std::vector<CatalogObject> objects_;
  std::unordered_map<std::int32_t, std::size_t> places_;  // of the ids among them
  // Ids by the sort keys of the names: tables, links and queries share one space, relationships have
  // their own (true).
  std::map<std::pair<bool, std::vector<std::byte>>, std::int32_t> ids_;
  std::map<PageNumber, std::shared_ptr<Table>> tables_;
  std::map<std::int32_t, PropertyBlob> properties_;
  std::map<PageNumber, std::vector<FieldRules>> rules_;
};

// Error 3049 when it is not there: of system tables, whose columns are known.
std::size_t ColumnOf(Table& table, std::u16string_view name);
// Values by column name into a row of `table`, the others null; long values are stored on the way.
RowFields MakeRow(Table& table, const std::vector<std::pair<std::u16string_view, dao::Value>>& values);
dao::Value ValueByName(Table& table, const RowFields& fields, std::u16string_view column);

// The first two bytes that every stored SID of the file is masked with.
dao::Binary MaskedSid(std::uint8_t first, std::uint8_t second, const std::array<std::uint8_t, 2>& mask);

}  // namespace zimbrat::jet
