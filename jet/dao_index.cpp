#include <algorithm>

#include "dao_table.h"
#include "refusing_field.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

using namespace zimbrat::platform;

class IndexField : public RefusingField {
 public:
  IndexField(std::shared_ptr<JetIndex> index, IndexFieldSpec spec)
      : index_(std::move(index)), spec_(std::move(spec)) {}
  const IndexFieldSpec& Spec() const { return spec_; }
  std::u16string Name() override {
    return Do([&] { return spec_.name; });
  }
  void SetName(std::u16string_view name) override {
    Do([&] { spec_.name = name; });
  }
  std::int32_t Attributes() override {
    return Do([&]() -> std::int32_t { return spec_.descending ? dao::dbDescending : 0; });
  }
  void SetAttributes(std::int32_t attributes) override {
    Do([&] { spec_.descending = (attributes & dao::dbDescending) != 0; });
  }

 private:
  template <class Work>
  auto Do(Work work) -> decltype(work()) {
    return Member(dao::kSourceField, [&] {
      index_->RequireThere();
      return work();
    });
  }

  std::shared_ptr<JetIndex> index_;
  IndexFieldSpec spec_;
};

class IndexFields : public dao::Collection<dao::Field> {
 public:
  explicit IndexFields(std::shared_ptr<JetIndex> index) : index_(std::move(index)) {}

  int Count() override {
    return Member(dao::kSourceIndexFields, [&] { return static_cast<int>(index_->FieldList().size()); });
  }
  std::shared_ptr<dao::Field> Item(int position) override {
    return Member(dao::kSourceIndexFields, [&]() -> std::shared_ptr<dao::Field> {
      const std::vector<IndexFieldSpec> list = index_->FieldList();
      if (position < 0 || position >= static_cast<int>(list.size())) {
        Raise(kErrItemNotFound, DecimalText(position));
      }
      return std::make_shared<IndexField>(index_, list[static_cast<std::size_t>(position)]);
    });
  }
  std::shared_ptr<dao::Field> Item(std::u16string_view name) override {
    return Member(dao::kSourceIndexFields, [&]() -> std::shared_ptr<dao::Field> {
      for (const IndexFieldSpec& spec : index_->FieldList()) {
        if (EqualIgnoringCase(spec.name, name)) return std::make_shared<IndexField>(index_, spec);
      }
      Raise(kErrItemNotFound, name);
    });
  }
  void Append(const std::shared_ptr<dao::Field>& field) override {
    Member(dao::kSourceIndexFields, [&] {
      if (index_->IsLive()) Raise(kErrInvalidOperation);
      const auto* own = dynamic_cast<IndexField*>(field.get());
      index_->AddPendingField(own ? own->Spec() : IndexFieldSpec{field->Name(), false});
    });
  }
  void Delete(std::u16string_view) override {
    Member(dao::kSourceIndexFields, [&] { Raise(kErrInvalidOperation); });
  }
  void Refresh() override {}

 private:
  std::shared_ptr<JetIndex> index_;
};

}  // namespace

LogicalIndex JetIndex::LiveEntry() {
  const std::shared_ptr<Table> table = table_->Open();
  const LogicalIndex* entry = table->Definition().FindIndexByNumber(*number_);
  if (!entry) Raise(kErrObjectInvalid);
  return *entry;
}

void JetIndex::RequireThere() {
  table_->RequireThere();
  if (IsLive()) LiveEntry();
}

bool JetIndex::LiveFlag(std::uint8_t flag) {
  const std::shared_ptr<Table> table = table_->Open();
  return (table->Definition().realIndexes[LiveEntry().realIndex].flags & flag) != 0;
}

void JetIndex::PutFlag(bool NewIndex::*slot, bool value) {
  Member(dao::kSourceIndex, [&] {
    if (IsLive()) Raise(kErrPropertyFixed);
    spec_.*slot = value;
  });
}

std::vector<IndexFieldSpec> JetIndex::FieldList() {
  if (!IsLive()) return spec_.fields;
  const std::shared_ptr<Table> table = table_->Open();
  const TableDefinition& definition = table->Definition();
  std::vector<IndexFieldSpec> list;
  for (const IndexColumn& part : definition.realIndexes[LiveEntry().realIndex].columns) {
    const auto position = definition.FindColumnById(part.columnId);
    if (position) list.push_back({definition.columns[*position].name, !part.ascending});
  }
  return list;
}

std::u16string JetIndex::Name() {
  return Member(dao::kSourceIndex, [&] { return IsLive() ? LiveEntry().name : spec_.name; });
}

void JetIndex::SetName(std::u16string_view name) {
  Member(dao::kSourceIndex, [&] {
    if (!IsLive()) {
      spec_.name = name;
      return;
    }
    if (LiveEntry().name == name) return;
    table_->ChangeStructure([&](Schema& schema) { schema.RenameIndex(table_->page, *number_, name); });
  });
}

bool JetIndex::Primary() {
  return Member(dao::kSourceIndex, [&] { return IsLive() ? LiveEntry().kind == kIndexPrimary : spec_.primary; });
}
void JetIndex::SetPrimary(bool primary) { PutFlag(&NewIndex::primary, primary); }
bool JetIndex::Unique() {
  return Member(dao::kSourceIndex, [&] { return IsLive() ? LiveFlag(kIndexUnique) : spec_.unique || spec_.primary; });
}
void JetIndex::SetUnique(bool unique) { PutFlag(&NewIndex::unique, unique); }
bool JetIndex::Required() {
  return Member(dao::kSourceIndex,
                [&] { return IsLive() ? LiveFlag(kIndexRequired) : spec_.required || spec_.primary; });
}
void JetIndex::SetRequired(bool required) { PutFlag(&NewIndex::required, required); }
bool JetIndex::IgnoreNulls() {
  return Member(dao::kSourceIndex, [&] { return IsLive() ? LiveFlag(kIndexIgnoreNulls) : spec_.ignoreNulls; });
}
void JetIndex::SetIgnoreNulls(bool ignore) { PutFlag(&NewIndex::ignoreNulls, ignore); }
bool JetIndex::Foreign() {
  return Member(dao::kSourceIndex, [&] { return IsLive() && LiveEntry().end == kEndReferring; });
}

std::shared_ptr<dao::Field> JetIndex::CreateField(std::u16string_view name) {
  return std::make_shared<IndexField>(shared_from_this(), IndexFieldSpec{std::u16string(name), false});
}

std::shared_ptr<dao::Collection<dao::Field>> JetIndex::Fields() {
  return std::make_shared<IndexFields>(shared_from_this());
}

}  // namespace zimbrat::jet
