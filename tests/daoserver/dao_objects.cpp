// The objects of a database, as tables of their members.
#include "call.h"
#include "platform/error_numbers.h"

namespace zimbrat::tests {
namespace {

using namespace zimbrat::platform;

// --- collections ---

template <class T>
void GiveItem(Call& call) {
  auto& collection = call.It<dao::Collection<T>>();
  const VARIANT& which = call.Argument(0);
  call.Give(which.vt == VT_BSTR ? collection.Item(call.Text(0)) : collection.Item(call.Number(0)));
}

template <class T>
void GiveCount(Call& call) {
  call.Give(static_cast<std::int16_t>(call.It<dao::Collection<T>>().Count()));
}

template <class T>
constexpr Member kCollectionMembers[] = {
    {L"Item", Kind::Property, 1, 0, &GiveItem<T>},
    Property(L"Count", &GiveCount<T>),
    Method<&dao::Collection<T>::Append>(L"Append", 1),
    Method<&dao::Collection<T>::Delete>(L"Delete", 1),
    Method<&dao::Collection<T>::Refresh>(L"Refresh"),
};

// --- TableDefs ---

bool IsSeen(Call& call, dao::TableDef& table) { return !call.Home()->unseenTables.contains(table.Name()); }

void GiveTableCount(Call& call) {
  auto& tables = call.It<dao::Collection<dao::TableDef>>();
  std::int16_t count = 0;
  for (int i = 0; i < tables.Count(); ++i) {
    if (IsSeen(call, *tables.Item(i))) ++count;
  }
  call.Give(count);
}

void GiveTable(Call& call) {
  auto& tables = call.It<dao::Collection<dao::TableDef>>();
  if (call.Argument(0).vt == VT_BSTR) {
    const auto table = tables.Item(call.Text(0));
    if (!IsSeen(call, *table)) Fail(kErrItemNotFound, call.Source());
    return call.Give(table);
  }
  int left = call.Number(0);
  for (int i = 0; i < tables.Count(); ++i) {
    const auto table = tables.Item(i);
    if (IsSeen(call, *table) && left-- == 0) return call.Give(table);
  }
  Fail(kErrItemNotFound, call.Source());
}

void RefreshTables(Call& call) {
  call.It<dao::Collection<dao::TableDef>>().Refresh();
  call.Home()->unseenTables.clear();
}

constexpr Member kTableCollectionMembers[] = {
    {L"Item", Kind::Property, 1, 0, &GiveTable},
    Property(L"Count", &GiveTableCount),
    Method<&dao::Collection<dao::TableDef>::Append>(L"Append", 1),
    Method<&dao::Collection<dao::TableDef>::Delete>(L"Delete", 1),
    Method(L"Refresh", 0, 0, &RefreshTables),
};

constexpr Class kFields = {L"Fields", u"DAO.Fields", kCollectionMembers<dao::Field>};
constexpr Class kIndexFields = {L"IndexFields", u"DAO.IndexFields", kCollectionMembers<dao::Field>};
constexpr Class kIndexes = {L"Indexes", u"DAO.Indexes", kCollectionMembers<dao::Index>};
constexpr Class kTableDefs = {L"TableDefs", u"DAO.TableDefs", kTableCollectionMembers};
constexpr Class kRelations = {L"Relations", u"DAO.Relations", kCollectionMembers<dao::Relation>};

// --- Field ---

void PutFieldValue(Call& call) {
  auto& field = call.It<dao::Field>();
  const dao::Value value = call.Value(0);
  const auto* text = std::get_if<std::u16string>(&value);
  field.SetValue(text != nullptr && field.Type() == dao::dbGUID ? dao::Value(GuidOf(*text)) : value);
}

constexpr Member kFieldMembers[] = {
    Property(L"Value", &Passed<&dao::Field::Value>::Do, &PutFieldValue),
    ReadWrite<&dao::Field::Name, &dao::Field::SetName>(L"Name"),
    Read<&dao::Field::Type>(L"Type"),
    Read<&dao::Field::Size>(L"Size"),
    ReadWrite<&dao::Field::Attributes, &dao::Field::SetAttributes>(L"Attributes"),
    ReadWrite<&dao::Field::Required, &dao::Field::SetRequired>(L"Required"),
    ReadWrite<&dao::Field::AllowZeroLength, &dao::Field::SetAllowZeroLength>(L"AllowZeroLength"),
    ReadWrite<&dao::Field::DefaultValue, &dao::Field::SetDefaultValue>(L"DefaultValue"),
    ReadWrite<&dao::Field::ValidationRule, &dao::Field::SetValidationRule>(L"ValidationRule"),
    ReadWrite<&dao::Field::ValidationText, &dao::Field::SetValidationText>(L"ValidationText"),
    ReadWrite<&dao::Field::ForeignName, &dao::Field::SetForeignName>(L"ForeignName"),
};
constexpr Class kField = {L"Field", u"DAO.Field", kFieldMembers};

// --- Index ---

void GiveIndexFields(Call& call) { call.GiveObject(kIndexFields, call.It<dao::Index>().Fields(), call.Home()); }

constexpr Member kIndexMembers[] = {
    ReadWrite<&dao::Index::Name, &dao::Index::SetName>(L"Name"),
    ReadWrite<&dao::Index::Primary, &dao::Index::SetPrimary>(L"Primary"),
    ReadWrite<&dao::Index::Unique, &dao::Index::SetUnique>(L"Unique"),
    ReadWrite<&dao::Index::Required, &dao::Index::SetRequired>(L"Required"),
    ReadWrite<&dao::Index::IgnoreNulls, &dao::Index::SetIgnoreNulls>(L"IgnoreNulls"),
    Read<&dao::Index::Foreign>(L"Foreign"),
    Method<&dao::Index::CreateField>(L"CreateField", 0, 3),
    Property(L"Fields", &GiveIndexFields),
};
constexpr Class kIndex = {L"Index", u"DAO.Index", kIndexMembers, false};

// --- TableDef ---

constexpr Member kTableDefMembers[] = {
    Read<&dao::TableDef::Fields>(L"Fields"),
    Read<&dao::TableDef::Indexes>(L"Indexes"),
    ReadWrite<&dao::TableDef::Name, &dao::TableDef::SetName>(L"Name"),
    Read<&dao::TableDef::Updatable>(L"Updatable"),
    Read<&dao::TableDef::Attributes>(L"Attributes"),
    Read<&dao::TableDef::RecordCount>(L"RecordCount"),
    Method<&dao::TableDef::CreateField>(L"CreateField", 0, 3),
    Method<&dao::TableDef::CreateIndex>(L"CreateIndex", 0, 1),
};
constexpr Class kTableDef = {L"TableDef", u"DAO.TableDef", kTableDefMembers};

// --- Relation ---

constexpr Member kRelationMembers[] = {
    Read<&dao::Relation::Fields>(L"Fields"),
    ReadWrite<&dao::Relation::Name, &dao::Relation::SetName>(L"Name"),
    Read<&dao::Relation::Table>(L"Table"),
    Read<&dao::Relation::ForeignTable>(L"ForeignTable"),
    Read<&dao::Relation::Attributes>(L"Attributes"),
    Method<&dao::Relation::CreateField>(L"CreateField", 0, 3),
};
constexpr Class kRelation = {L"Relation", u"DAO.Relation", kRelationMembers};

// --- Recordset ---

// There is no way back: the rows are counted, then passed again.
void MoveLast(Call& call) {
  auto& rows = call.It<dao::Recordset>();
  int more = -1;
  for (rows.MoveFirst(); !rows.EndOfFile(); rows.MoveNext()) ++more;
  for (rows.MoveFirst(); more > 0; --more) rows.MoveNext();
}

constexpr Member kRecordsetMembers[] = {
    Read<&dao::Recordset::Fields>(L"Fields"),
    Read<&dao::Recordset::EndOfFile>(L"EOF"),
    Read<&dao::Recordset::BeginOfFile>(L"BOF"),
    Method<&dao::Recordset::MoveFirst>(L"MoveFirst"),
    Method<&dao::Recordset::MoveNext>(L"MoveNext"),
    Method(L"MoveLast", 0, 1, &MoveLast),
    Read<&dao::Recordset::RecordCount>(L"RecordCount"),
    Method<&dao::Recordset::AddNew>(L"AddNew"),
    Method<&dao::Recordset::Edit>(L"Edit"),
    Method<&dao::Recordset::Update>(L"Update", 0, 2),
    Method<&dao::Recordset::CancelUpdate>(L"CancelUpdate", 0, 1),
    Method<&dao::Recordset::Delete>(L"Delete"),
    Method<&dao::Recordset::Close>(L"Close"),
};
constexpr Class kRecordset = {L"Recordset", u"DAO.Recordset", kRecordsetMembers};

}  // namespace

template <> const Class& ClassOf<dao::Collection<dao::Field>>() { return kFields; }
template <> const Class& ClassOf<dao::Collection<dao::Index>>() { return kIndexes; }
template <> const Class& ClassOf<dao::Collection<dao::TableDef>>() { return kTableDefs; }
template <> const Class& ClassOf<dao::Collection<dao::Relation>>() { return kRelations; }
template <> const Class& ClassOf<dao::Field>() { return kField; }
template <> const Class& ClassOf<dao::Index>() { return kIndex; }
template <> const Class& ClassOf<dao::TableDef>() { return kTableDef; }
template <> const Class& ClassOf<dao::Relation>() { return kRelation; }
template <> const Class& ClassOf<dao::Recordset>() { return kRecordset; }

}  // namespace zimbrat::tests
