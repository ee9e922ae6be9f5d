#include "jet/catalog/catalog.h"

#include <algorithm>
#include <array>

#include "jet/file/errors.h"
#include "jet/index/collation.h"
#include "jet/index/key.h"
#include "jet/table/long_values.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

constexpr std::size_t kMaxObjects = 200'000;  // more than fit in 2 GB; keeps damage from filling memory
constexpr std::int32_t kAllRights = 0x000FFFFF;
// SIDs before masking.
constexpr std::array<std::uint8_t, 2> kSidEngine = {0x02, 0x03};
constexpr std::array<std::uint8_t, 2> kSidCreator = {0x02, 0x04};
constexpr std::array<std::uint8_t, 2> kSidUsers = {0x02, 0x01};
constexpr std::array<std::uint8_t, 2> kSidAdmin = {0x03, 0x01};

// Equal for names that the sort order takes for equal.
std::vector<std::byte> NameKey(std::u16string_view name) {
  std::vector<std::byte> key;
  AppendTextKey(name, true, key);
  return key;
}

template <class T>
T NumberOr(const dao::Value& value, T otherwise) {
  const T* number = std::get_if<T>(&value);
  return number ? *number : otherwise;
}

std::u16string TextOr(const dao::Value& value) {
  const auto* text = std::get_if<std::u16string>(&value);
  return text ? *text : std::u16string();
}

}  // namespace

std::size_t ColumnOf(Table& table, std::u16string_view name) {
  const auto column = table.Definition().FindColumn(name);
  if (!column) RaiseDamaged(u"tabela „" + table.Name() + u"” nie ma kolumny „" + std::u16string(name) + u"”");
  return *column;
}

RowFields MakeRow(Table& table, const std::vector<std::pair<std::u16string_view, dao::Value>>& values) {
  RowFields fields(table.Definition().columns.size());
  for (const auto& [name, value] : values) {
    const std::size_t column = ColumnOf(table, name);
    fields[column] = table.FieldOf(column, value);
  }
  return fields;
}

dao::Value ValueByName(Table& table, const RowFields& fields, std::u16string_view name) {
  const std::size_t column = ColumnOf(table, name);
  return table.ValueOf(column, fields[column]);
}

dao::Binary MaskedSid(std::uint8_t first, std::uint8_t second, const std::array<std::uint8_t, 2>& mask) {
  return {std::byte{static_cast<std::uint8_t>(first ^ mask[0])},
          std::byte{static_cast<std::uint8_t>(second ^ mask[1])}};
}

void Catalog::Refresh() {
  if (loaded_ && generation_ == storage_.pager.Generation()) return;
  if (generation_ != storage_.pager.Generation()) {
    // A rolled-back table may be gone: nobody gets its object again.
    tables_.clear();
    properties_.clear();
    rules_.clear();
  }
  Load();
}

Table& Catalog::SystemTable(PageNumber page) {
  std::shared_ptr<Table>& table = tables_[page];
  if (!table) {
    constexpr std::array<std::u16string_view, 4> names = {u"MSysObjects", u"MSysACEs", u"MSysQueries",
                                                          u"MSysRelationships"};
    table = std::make_shared<Table>(storage_, page, std::u16string(names[page - kObjectsPage]));
  }
  return *table;
}

void Catalog::Load() {
  loaded_ = false;  // a list that breaks off halfway is none
  generation_ = storage_.pager.Generation();
  objects_.clear();
  places_.clear();
  ids_.clear();
  Table& table = SystemTable(kObjectsPage);
  const std::size_t id = ColumnOf(table, u"Id"), parentId = ColumnOf(table, u"ParentId"),
                    type = ColumnOf(table, u"Type"), name = ColumnOf(table, u"Name"),
                    flags = ColumnOf(table, u"Flags");
  for (RowScan scan(table); scan.Next();) {
    if (objects_.size() >= kMaxObjects) RaiseDamaged(u"katalog ma zbyt wiele wierszy");
    const auto value = [&](std::size_t column) { return table.ValueOf(column, scan.Fields()[column]); };
    CatalogObject object;
    object.id = NumberOr<std::int32_t>(value(id), 0);
    object.parentId = NumberOr<std::int32_t>(value(parentId), 0);
    object.type = NumberOr<std::int16_t>(value(type), 0);
    object.name = TextOr(value(name));
    object.flags = static_cast<std::uint32_t>(NumberOr<std::int32_t>(value(flags), 0));
    object.row = scan.Place();
    Append(std::move(object));
  }
  loaded_ = true;
}

const std::vector<CatalogObject>& Catalog::Objects() {
  Refresh();
  return objects_;
}

const CatalogObject* Catalog::FindTable(std::u16string_view name) {
  const CatalogObject* object = FindTableOrQuery(name);
  return object && object->IsTableOrLink() ? object : nullptr;
}

const CatalogObject* Catalog::FindTableOrQuery(std::u16string_view name) { return FindByName(false, name); }

const CatalogObject* Catalog::FindRelationship(std::u16string_view name) { return FindByName(true, name); }

const CatalogObject* Catalog::FindByName(bool relationship, std::u16string_view name) {
  Refresh();
  const auto found = ids_.find({relationship, NameKey(name)});
  return found == ids_.end() ? nullptr : FindById(found->second);
}

const CatalogObject* Catalog::FindById(std::int32_t id) const {
  const auto found = places_.find(id);
  return found == places_.end() ? nullptr : &objects_[found->second];
}

// Of two objects with one id, which only damage makes, the first counts.
void Catalog::Append(CatalogObject object) {
  places_.emplace(object.id, objects_.size());
  NoteName(object);
  objects_.push_back(std::move(object));
}

void Catalog::NoteName(const CatalogObject& object) {
  const bool relationship = object.Is(ObjectType::Relationship);
  if (!relationship && !object.IsTableOrLink() && !object.Is(ObjectType::Query)) return;
  ids_.emplace(std::pair(relationship, NameKey(object.name)), object.id);
}

const CatalogObject* Catalog::FindTableByPage(PageNumber page) {
  Refresh();
  const CatalogObject* likely = FindById(static_cast<std::int32_t>(page));
  if (likely && likely->Is(ObjectType::Table)) return likely;
  for (const CatalogObject& object : objects_) {
    if (object.Is(ObjectType::Table) && static_cast<PageNumber>(object.id & 0xFFFFFF) == page) return &object;
  }
  return nullptr;
}

std::shared_ptr<Table> Catalog::Open(PageNumber page) {
  Refresh();
  if (page >= kObjectsPage && page <= kRelationshipsPage) {
    SystemTable(page);
    return tables_[page];
  }
  std::shared_ptr<Table>& table = tables_[page];
  if (!table) {
    const CatalogObject* object = FindTableByPage(page);
    if (!object) RaiseDamagedPage(page, u"tabela nie stoi w katalogu");
    table = std::make_shared<Table>(storage_, page, object->name);
  }
  return table;
}

void Catalog::DefinitionChanged(PageNumber page) {
  const auto found = tables_.find(page);
  if (found != tables_.end()) found->second->Reload();
  rules_.erase(page);
}

std::int32_t Catalog::ContainerId(std::u16string_view name) {
  for (const CatalogObject& object : Objects()) {
    if (object.parentId == kRootContainer && object.Is(ObjectType::Container) && object.name == name) {
      return object.id;
    }
  }
  RaiseDamaged(u"katalog nie ma pojemnika „" + std::u16string(name) + u"”");
}

const CatalogObject& Catalog::Require(std::int32_t id) {
  Refresh();
  const CatalogObject* object = FindById(id);
  if (!object) RaiseDamaged(u"katalog nie ma obiektu o podanym numerze");
  return *object;
}

dao::Binary Catalog::Sid(std::uint8_t first, std::uint8_t second) {
  // The owner of MSysObjects is the engine: that gives the file's mask.
  for (const CatalogObject& object : Objects()) {
    if (!object.Is(ObjectType::Table) || object.id != static_cast<std::int32_t>(kObjectsPage)) continue;
    Table& table = SystemTable(kObjectsPage);
    const dao::Value owner = ValueByName(table, table.Read(object.row), u"Owner");
    const auto* bytes = std::get_if<dao::Binary>(&owner);
    if (!bytes || bytes->size() != 2) break;
    const std::array<std::uint8_t, 2> mask = {
        static_cast<std::uint8_t>(Get8(*bytes, 0) ^ kSidEngine[0]),
        static_cast<std::uint8_t>(Get8(*bytes, 1) ^ kSidEngine[1])};
    return MaskedSid(first, second, mask);
  }
  return {std::byte{first}, std::byte{second}};
}

void Catalog::AddObject(CatalogObject object, const PropertyBlob& properties) {
  Table& table = SystemTable(kObjectsPage);
  const dao::Date now{clock_.Now()};
  dao::Value blob;
  if (!properties.IsEmpty()) blob = properties.Encode();
  const RowFields fields = MakeRow(table, {{u"Id", object.id},
                                           {u"ParentId", object.parentId},
                                           {u"Name", object.name},
                                           {u"Type", object.type},
                                           {u"DateCreate", now},
                                           {u"DateUpdate", now},
                                           {u"Flags", static_cast<std::int32_t>(object.flags)},
                                           {u"Owner", Sid(kSidAdmin[0], kSidAdmin[1])},
                                           {u"LvProp", blob}});
  object.row = table.Insert(table.Prepare(fields));
  AddAccessEntries(object.id, object.parentId);
  Append(std::move(object));
}

void Catalog::AddTable(std::u16string_view name, PageNumber page, const PropertyBlob& properties) {
  CatalogObject object;
  object.id = static_cast<std::int32_t>(page);
  object.parentId = ContainerId(u"Tables");
  object.type = static_cast<std::int16_t>(ObjectType::Table);
  object.name = name;
  AddObject(std::move(object), properties);
}

void Catalog::AddRelationship(std::u16string_view name) {
  std::int32_t highest = 0;
  bool any = false;
  for (const CatalogObject& object : Objects()) {
    if (object.id >= 0) continue;
    highest = any ? std::max(highest, object.id) : object.id;
    any = true;
  }
  CatalogObject object;
  object.id = any ? highest + 1 : static_cast<std::int32_t>(0x80000000u);
  object.parentId = ContainerId(u"Relationships");
  object.type = static_cast<std::int16_t>(ObjectType::Relationship);
  object.name = name;
  AddObject(std::move(object), {});
}

std::vector<RowPointer> Catalog::AccessEntriesOf(std::int32_t id) {
  Table& table = SystemTable(kAcesPage);
  const KeyColumn column{kTypeLong, true};
  const dao::Value value = id;
  const std::vector<std::byte> key = EncodeKey({&column, 1}, {&value, 1});
  std::vector<RowPointer> rows;
  const IndexTree tree = table.Tree(0);
  for (auto cursor = tree.Seek(key); cursor.Valid(); cursor.Next()) {
    const ConstBytes found = cursor.Key();
    if (!std::equal(key.begin(), key.end(), found.begin(), found.end())) break;
    rows.push_back(cursor.Row());
  }
  return rows;
}

// What the container hands down: the same rights, the creator replaced by the owner; two entries of one
// SID become one.
void Catalog::AddAccessEntries(std::int32_t id, std::int32_t containerId) {
  Table& table = SystemTable(kAcesPage);
  const dao::Binary owner = Sid(kSidAdmin[0], kSidAdmin[1]);
  const dao::Binary creator = Sid(kSidCreator[0], kSidCreator[1]);
  std::vector<std::pair<dao::Binary, std::int32_t>> entries;
  for (const RowPointer place : AccessEntriesOf(containerId)) {
    const RowFields row = table.Read(place);
    if (ValueByName(table, row, u"FInheritable") != dao::Value(true)) continue;
    const dao::Value sidValue = ValueByName(table, row, u"SID");
    const auto* stored = std::get_if<dao::Binary>(&sidValue);
    if (!stored) continue;
    const dao::Binary sid = *stored == creator ? owner : *stored;
    const auto rights = NumberOr<std::int32_t>(ValueByName(table, row, u"ACM"), 0);
    const auto same = std::find_if(entries.begin(), entries.end(),
                                   [&](const auto& entry) { return entry.first == sid; });
    if (same != entries.end()) {
      same->second |= rights;
    } else {
      entries.emplace_back(sid, rights);
    }
  }
  if (entries.empty()) entries.emplace_back(Sid(kSidUsers[0], kSidUsers[1]), kAllRights);
  for (const auto& [sid, rights] : entries) {
    table.Insert(table.Prepare(
        MakeRow(table, {{u"ObjectId", id}, {u"SID", sid}, {u"ACM", rights}, {u"FInheritable", false}})));
  }
}

void Catalog::AddMissingAccessEntries(const CatalogObject& object) {
  if (AccessEntriesOf(object.id).empty()) AddAccessEntries(object.id, object.parentId);
}

void Catalog::RemoveAccessEntries(std::int32_t id) {
  Table& table = SystemTable(kAcesPage);
  for (const RowPointer place : AccessEntriesOf(id)) table.Delete(place, table.Read(place));
}

void Catalog::Remove(std::int32_t id) {
  ++removals_;
  const CatalogObject object = Require(id);
  Table& table = SystemTable(kObjectsPage);
  table.Delete(object.row, table.Read(object.row));
  RemoveAccessEntries(id);
  if (object.Is(ObjectType::Table)) {
    tables_.erase(static_cast<PageNumber>(id));
    rules_.erase(static_cast<PageNumber>(id));
  }
  properties_.erase(id);
  std::erase_if(ids_, [&](const auto& entry) { return entry.second == id; });
  std::erase_if(objects_, [&](const CatalogObject& other) { return other.id == id; });
  places_.clear();
  for (std::size_t i = 0; i < objects_.size(); ++i) places_.emplace(objects_[i].id, i);
}

void Catalog::ChangeRow(const CatalogObject& object,
                        const std::vector<std::pair<std::u16string_view, dao::Value>>& values) {
  Table& table = SystemTable(kObjectsPage);
  const RowFields former = table.Read(object.row);
  const RowFields changes = MakeRow(table, values);
  RowFields fields = former;
  for (const auto& [name, value] : values) {
    const std::size_t column = *table.Definition().FindColumn(name);
    fields[column] = changes[column];
  }
  table.Update(object.row, former, table.Prepare(fields, &former));
}

void Catalog::Rename(std::int32_t id, std::u16string_view name) {
  const CatalogObject object = Require(id);
  ChangeRow(object, {{u"Name", std::u16string(name)}, {u"DateUpdate", dao::Date{clock_.Now()}}});
  std::erase_if(ids_, [&](const auto& entry) { return entry.second == id; });
  for (CatalogObject& other : objects_) {
    if (other.id != id) continue;
    other.name = name;
    NoteName(other);
  }
  const auto table = tables_.find(static_cast<PageNumber>(id));
  if (object.Is(ObjectType::Table) && table != tables_.end()) table->second->SetName(name);
}

void Catalog::Touch(std::int32_t id) {
  ChangeRow(Require(id), {{u"DateUpdate", dao::Date{clock_.Now()}}});
}

const PropertyBlob& Catalog::Properties(std::int32_t id) {
  const CatalogObject& object = Require(id);
  const auto found = properties_.find(id);
  if (found != properties_.end()) return found->second;
  Table& table = SystemTable(kObjectsPage);
  const dao::Value value = ValueByName(table, table.Read(object.row), u"LvProp");
  const auto* bytes = std::get_if<dao::Binary>(&value);
  return properties_.emplace(id, bytes ? PropertyBlob::Decode(*bytes) : PropertyBlob()).first->second;
}

void Catalog::PutProperties(std::int32_t id, const PropertyBlob& properties) {
  if (Properties(id) == properties) return;
  const CatalogObject object = Require(id);
  Table& table = SystemTable(kObjectsPage);
  const std::size_t column = *table.Definition().FindColumn(u"LvProp");
  const RowFields former = table.Read(object.row);
  dao::Value blob;
  if (!properties.IsEmpty()) blob = properties.Encode();
  ChangeRow(object, {{u"LvProp", blob}, {u"DateUpdate", dao::Date{clock_.Now()}}});
  const LongValueMaps* maps = table.Definition().FindLongValueMaps(table.Definition().columns[column].id);
  if (former[column].present && maps) FreeLongValue(storage_, *maps, former[column].bytes);
  properties_[id] = properties;
  rules_.erase(static_cast<PageNumber>(id));
}

const std::vector<FieldRules>& Catalog::Rules(Table& table) {
  Refresh();
  const auto found = rules_.find(table.Page());
  if (found != rules_.end()) return found->second;
  const CatalogObject* object = FindTableByPage(table.Page());
  std::vector<FieldRules> rules;
  const PropertyBlob blob = object ? Properties(object->id) : PropertyBlob();
  for (const Column& column : table.Definition().columns) {
    FieldRules rule;
    rule.required = blob.FindBoolean(column.name, u"Required");
    rule.allowZeroLength = blob.FindBoolean(column.name, u"AllowZeroLength");
    rule.defaultValue = blob.FindText(column.name, u"DefaultValue");
    rule.validationRule = blob.FindText(column.name, u"ValidationRule");
    rule.validationText = blob.FindText(column.name, u"ValidationText");
    rules.push_back(std::move(rule));
  }
  return rules_.emplace(table.Page(), std::move(rules)).first->second;
}

}  // namespace zimbrat::jet
