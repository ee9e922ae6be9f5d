// The DAO object model as the product uses it, over whichever database engine there is. Members bear
// DAO's names and raise DAO's numbers as RunTimeError; a member that an engine has no use for says so.
//
// Objects are shared: every one stays valid as long as somebody holds it, but after its database was
// closed each member raises 3420. Close children before their parents; a destructor closes what was
// left open and throws nothing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace zimbrat::dao {

// CreateDatabase options.
inline constexpr std::int32_t dbEncrypt = 2;
inline constexpr std::int32_t dbVersion40 = 64;
inline constexpr const char16_t* dbLangGeneral = u";LANGID=0x0409;CP=1252;COUNTRY=0";

// OpenRecordset types; Execute options.
inline constexpr std::int32_t dbOpenTable = 1;
inline constexpr std::int32_t dbOpenDynaset = 2;
inline constexpr std::int32_t dbOpenSnapshot = 4;
inline constexpr std::int32_t dbFailOnError = 128;

// Field types.
inline constexpr std::int16_t dbBoolean = 1;
inline constexpr std::int16_t dbByte = 2;
inline constexpr std::int16_t dbInteger = 3;
inline constexpr std::int16_t dbLong = 4;
inline constexpr std::int16_t dbCurrency = 5;
inline constexpr std::int16_t dbSingle = 6;
inline constexpr std::int16_t dbDouble = 7;
inline constexpr std::int16_t dbDate = 8;
inline constexpr std::int16_t dbBinary = 9;
inline constexpr std::int16_t dbText = 10;
inline constexpr std::int16_t dbLongBinary = 11;
inline constexpr std::int16_t dbMemo = 12;
inline constexpr std::int16_t dbGUID = 15;
inline constexpr std::int16_t dbDecimal = 20;

// Field attributes.
inline constexpr std::int32_t dbFixedField = 1;
inline constexpr std::int32_t dbDescending = 1;  // of a field in Index.Fields
inline constexpr std::int32_t dbVariableField = 2;
inline constexpr std::int32_t dbAutoIncrField = 16;
inline constexpr std::int32_t dbUpdatableField = 32;
inline constexpr std::int32_t dbHyperlinkField = 32768;

// Table attributes.
inline constexpr std::int32_t dbHiddenObject = 1;
inline constexpr std::int32_t dbSystemObject = static_cast<std::int32_t>(0x80000002);
inline constexpr std::int32_t dbAttachedTable = 0x40000000;

// Relation attributes.
inline constexpr std::int32_t dbRelationUnique = 1;
inline constexpr std::int32_t dbRelationDontEnforce = 2;
inline constexpr std::int32_t dbRelationUpdateCascade = 256;
inline constexpr std::int32_t dbRelationDeleteCascade = 4096;

// A value of a field.
struct Currency {
  std::int64_t scaled = 0;  // ten-thousandths
  bool operator==(const Currency&) const = default;
};
struct Date {
  double days = 0;  // since 1899-12-30
  bool operator==(const Date&) const = default;
};
struct Guid {
  std::array<std::byte, 16> bytes{};  // as the file keeps them: u32, u16, u16 little-endian, 8 bytes
  bool operator==(const Guid&) const = default;
};
struct Decimal {
  bool negative = false;
  std::array<std::uint32_t, 4> magnitude{};  // most significant first
  std::uint8_t scale = 0;
  bool operator==(const Decimal&) const = default;
};
// Its destructor lets Value know when it holds nothing at all: the library (GCC 12) takes a variant of such types as
// the others for one that always holds something, and destroys what a copy that ran out of memory never made.
struct Null {
  constexpr ~Null() {}
  bool operator==(const Null&) const = default;
};
using Binary = std::vector<std::byte>;
using Value = std::variant<Null, bool, std::uint8_t, std::int16_t, std::int32_t, Currency, float, double,
                           Date, std::u16string, Binary, Guid, Decimal>;

inline bool IsNull(const Value& value) { return std::holds_alternative<Null>(value); }

// A collection: positions from 0; names without regard to case. Item raises 3265 for what is absent.
template <class T>
class Collection {
 public:
  virtual ~Collection() = default;
  virtual int Count() = 0;
  virtual std::shared_ptr<T> Item(int position) = 0;
  virtual std::shared_ptr<T> Item(std::u16string_view name) = 0;
  virtual void Append(const std::shared_ptr<T>& object) = 0;
  virtual void Delete(std::u16string_view name) = 0;
  // Needed to see what SQL or another session changed.
  virtual void Refresh() = 0;
};

class Field {
 public:
  virtual ~Field() = default;
  virtual std::u16string Name() = 0;
  // On a live table: renames.
  virtual void SetName(std::u16string_view name) = 0;
  virtual std::int16_t Type() = 0;
  // Characters for text, bytes otherwise.
  virtual std::int32_t Size() = 0;
  virtual std::int32_t Attributes() = 0;
  virtual void SetAttributes(std::int32_t attributes) = 0;
  virtual bool Required() = 0;
  virtual void SetRequired(bool required) = 0;
  virtual bool AllowZeroLength() = 0;
  virtual void SetAllowZeroLength(bool allow) = 0;
  // The expression's text; empty when there is none.
  virtual std::u16string DefaultValue() = 0;
  virtual void SetDefaultValue(std::u16string_view expression) = 0;
  virtual std::u16string ValidationRule() = 0;
  virtual void SetValidationRule(std::u16string_view expression) = 0;
  virtual std::u16string ValidationText() = 0;
  virtual void SetValidationText(std::u16string_view text) = 0;
  // In Relation.Fields: the matching field of ForeignTable.
  virtual std::u16string ForeignName() = 0;
  virtual void SetForeignName(std::u16string_view name) = 0;
  // In Recordset.Fields only (3267 elsewhere). A put converts to the field's type (3421, 3163).
  virtual dao::Value Value() = 0;
  virtual void SetValue(const dao::Value& value) = 0;
};

class Index {
 public:
  virtual ~Index() = default;
  virtual std::u16string Name() = 0;
  // On a live table: renames.
  virtual void SetName(std::u16string_view name) = 0;
  virtual bool Primary() = 0;
  virtual void SetPrimary(bool primary) = 0;
  virtual bool Unique() = 0;
  virtual void SetUnique(bool unique) = 0;
  virtual bool Required() = 0;
  virtual void SetRequired(bool required) = 0;
  virtual bool IgnoreNulls() = 0;
  virtual void SetIgnoreNulls(bool ignore) = 0;
  // True for the index that a relation made.
  virtual bool Foreign() = 0;
  virtual std::shared_ptr<Field> CreateField(std::u16string_view name) = 0;
  virtual std::shared_ptr<Collection<Field>> Fields() = 0;
};

class Recordset {
 public:
  virtual ~Recordset() = default;
  virtual bool EndOfFile() = 0;  // EOF: the name is a macro of the standard library
  virtual bool BeginOfFile() = 0;
  virtual void MoveFirst() = 0;
  virtual void MoveNext() = 0;
  virtual std::int32_t RecordCount() = 0;
  virtual std::shared_ptr<Collection<Field>> Fields() = 0;
  virtual void AddNew() = 0;
  virtual void Edit() = 0;
  virtual void Update() = 0;
  virtual void CancelUpdate() = 0;
  virtual void Delete() = 0;
  virtual void Close() = 0;
};

class TableDef {
 public:
  virtual ~TableDef() = default;
  virtual std::u16string Name() = 0;
  // Before the append any number of times; afterwards it renames the table.
  virtual void SetName(std::u16string_view name) = 0;
  // False for linked tables.
  virtual bool Updatable() = 0;
  virtual std::int32_t Attributes() = 0;
  virtual std::int32_t RecordCount() = 0;
  // Type and size may be texts: "10" is as good as 10; what does not convert raises 3421.
  virtual std::shared_ptr<Field> CreateField(std::u16string_view name, const Value& type,
                                             const Value& size) = 0;
  virtual std::shared_ptr<Index> CreateIndex(std::u16string_view name) = 0;
  virtual std::shared_ptr<Collection<Field>> Fields() = 0;
  virtual std::shared_ptr<Collection<Index>> Indexes() = 0;
};

class Relation {
 public:
  virtual ~Relation() = default;
  virtual std::u16string Name() = 0;
  virtual void SetName(std::u16string_view name) = 0;
  // The referenced side.
  virtual std::u16string Table() = 0;
  // The referring side.
  virtual std::u16string ForeignTable() = 0;
  virtual std::int32_t Attributes() = 0;
  virtual std::shared_ptr<Field> CreateField(std::u16string_view name) = 0;
  virtual std::shared_ptr<Collection<Field>> Fields() = 0;
};

class Database {
 public:
  virtual ~Database() = default;
  // The full path.
  virtual std::u16string Name() = 0;
  // "4.0" for Jet 4.
  virtual std::u16string Version() = 0;
  virtual bool Updatable() = 0;
  // Rows of the last Execute.
  virtual std::int32_t RecordsAffected() = 0;
  // System tables included.
  virtual std::shared_ptr<Collection<TableDef>> TableDefs() = 0;
  virtual std::shared_ptr<Collection<Relation>> Relations() = 0;
  virtual std::shared_ptr<TableDef> CreateTableDef(std::u16string_view name) = 0;
  // `attributes` may be a text; what does not convert raises 3421.
  virtual std::shared_ptr<Relation> CreateRelation(std::u16string_view name, std::u16string_view table,
                                                   std::u16string_view foreignTable,
                                                   const Value& attributes) = 0;
  // A table's name or a SELECT text.
  virtual std::shared_ptr<Recordset> OpenRecordset(std::u16string_view source,
                                                   std::int32_t type = dbOpenDynaset) = 0;
  virtual void Execute(std::u16string_view statement, std::int32_t options = 0) = 0;
  virtual void NewPassword(std::u16string_view oldPassword, std::u16string_view newPassword) = 0;
  virtual void Close() = 0;
};

class Workspace {
 public:
  virtual ~Workspace() = default;
  // `connect` is ";pwd=<text>;" or empty.
  virtual std::shared_ptr<Database> OpenDatabase(std::u16string_view path, bool exclusive, bool readOnly,
                                                 std::u16string_view connect = {}) = 0;
  // The new database is open, exclusively, until closed. 3204 when a file of that name exists.
  virtual std::shared_ptr<Database> CreateDatabase(std::u16string_view path, std::u16string_view locale,
                                                   std::int32_t options) = 0;
  virtual void BeginTrans() = 0;
  virtual void CommitTrans() = 0;
  virtual void Rollback() = 0;
  virtual void Close() = 0;
};

// What a repair did, for the person who asked for it.
struct RepairOutcome {
  bool wasDamaged = false;              // and is sound now; an undamaged file is left as it was
  std::vector<std::u16string> losses;   // in Polish, a line each
  std::u16string keptFile;              // the damaged file as it was; empty when nothing was lost
};

inline constexpr const char16_t* kEmbeddedEngine = u"wbudowany";

class Engine {
 public:
  virtual ~Engine() = default;
  // kEmbeddedEngine for the embedded one, the program id of an installed one.
  virtual std::u16string Name() = 0;
  // "3.6", "12.0" ... of DAO; the embedded engine says "4.0".
  virtual std::u16string Version() = 0;
  // Name "", user "Admin", password "": anything else is 3029.
  virtual std::shared_ptr<Workspace> CreateWorkspace(std::u16string_view name, std::u16string_view user,
                                                     std::u16string_view password) = 0;
  // Empty from an engine that does not say.
  virtual RepairOutcome RepairDatabase(std::u16string_view path) = 0;
};

}  // namespace zimbrat::dao
