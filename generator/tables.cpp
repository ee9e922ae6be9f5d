// One table of a structure file: created with its fields and indexes, or completed where it exists.
//
// A new table gathers fields and indexes in memory and reaches the database in one append at the
// end; an existing one takes each new field and index at once. Of an existing field only
// allow-zero-length and default value are renewed.
#include "generator/ModGeneruj.h"

#include "find_exactly.h"
#include "suite/ModPrgFun.h"
#include "suite/manners.h"
#include "platform/error_numbers.h"
#include "platform/numbers.h"

#include <memory>

namespace zimbrat::generator {
namespace {

// The work of one call. What fails with a text of its own fills the context and answers false.
class TableWork {
 public:
  TableWork(suite::KontekstBledu& context, dao::Database& database, std::u16string_view tableName)
      : context_(context), database_(database), tableName_(tableName) {}

  bool Run(const std::vector<suite::SectionEntry>& lines);
  const std::u16string& LastField() const { return lastField_; }
  // True once the table turned out to be one that cannot be changed.
  bool IsNotUpdatable() const { return isNotUpdatable_; }

 private:
  bool ApplyLine(const suite::SectionEntry& line);
  void ApplyField(std::u16string_view value);
  void ApplyIndex(std::u16string_view value);
  bool ApplyIndexField(std::u16string_view value);
  std::shared_ptr<dao::Field> CreateField();
  void AppendPendingIndex();

  suite::KontekstBledu& context_;
  dao::Database& database_;
  std::u16string_view tableName_;
  std::shared_ptr<dao::TableDef> table_;
  bool tableExists_ = false;
  bool isNotUpdatable_ = false;
  FieldLine field_;
  IndexLine index_;
  std::u16string indexField_;
  std::u16string lastField_;
  std::shared_ptr<dao::Index> currentIndex_;
  bool isIndexPending_ = false;
};

bool TableWork::Run(const std::vector<suite::SectionEntry>& lines) {
  table_ = FindExactly(*database_.TableDefs(), tableName_);
  tableExists_ = table_ != nullptr;
  if (!tableExists_) table_ = database_.CreateTableDef(tableName_);
  isNotUpdatable_ = !table_->Updatable();
  if (isNotUpdatable_) return false;
  table_->SetName(tableName_);
  for (const suite::SectionEntry& line : lines) {
    if (!ApplyLine(line)) return false;
  }
  AppendPendingIndex();
  if (!tableExists_) database_.TableDefs()->Append(table_);
  return true;
}

bool TableWork::ApplyLine(const suite::SectionEntry& line) {
  if (line.key == u"Field") {
    ApplyField(line.value);
  } else if (line.key == u"Index") {
    ApplyIndex(line.value);
  } else if (line.key == u"IndexField") {
    return ApplyIndexField(line.value);
  }
  return true;
}

void TableWork::ApplyField(std::u16string_view value) {
  DecodeFieldLine(value, field_);
  lastField_ = field_.name;
  std::shared_ptr<dao::Field> field = FindExactly(*table_->Fields(), field_.name);
  const bool isCreated = field == nullptr;
  if (isCreated) field = CreateField();
  field->SetAllowZeroLength(platform::BooleanFromText(field_.allowZeroLength));
  field->SetDefaultValue(field_.defaultValue);
  // A size that differs changes nothing; one that is no number fails here.
  static_cast<void>(platform::DoubleFromText(field_.size));
  if (!isCreated) return;
  field->SetRequired(platform::BooleanFromText(field_.required));
  // A field added to an existing table gets no attributes: it cannot become a counter this way.
  if (!tableExists_) field->SetAttributes(platform::LongFromText(field_.attributes));
  if (field->Type() != dao::dbLongBinary) field->SetValidationText(field_.validationText);
}

std::shared_ptr<dao::Field> TableWork::CreateField() {
  auto field = table_->CreateField(field_.name, field_.type, field_.size);
  table_->Fields()->Append(field);
  return field;
}

void TableWork::ApplyIndex(std::u16string_view value) {
  AppendPendingIndex();
  DecodeIndexLine(value, index_);
  currentIndex_ = FindExactly(*table_->Indexes(), index_.name);
  if (currentIndex_) return;
  currentIndex_ = table_->CreateIndex(index_.name);
  isIndexPending_ = true;
  currentIndex_->SetPrimary(platform::BooleanFromText(index_.primary));
  currentIndex_->SetUnique(platform::BooleanFromText(index_.unique));
  currentIndex_->SetRequired(platform::BooleanFromText(index_.required));
}

bool TableWork::ApplyIndexField(std::u16string_view value) {
  if (!DecodeIndexFieldLine(value, indexField_)) {
    context_.Detail = u"Błąd dekodowania indeksu: " + indexField_;
    context_.Line = value;
    context_.Table = tableName_;
    if (currentIndex_) context_.Index = currentIndex_->Name();
    return false;
  }
  lastField_ = indexField_;
  if (!currentIndex_) throw platform::OwnError(platform::kErrObjectNotSet);
  if (FindExactly(*currentIndex_->Fields(), indexField_)) return true;
  currentIndex_->Fields()->Append(currentIndex_->CreateField(indexField_));
  return true;
}

void TableWork::AppendPendingIndex() {
  if (!isIndexPending_) return;
  isIndexPending_ = false;
  table_->Indexes()->Append(currentIndex_);
}

}  // namespace

bool UtwórzTablice(ProgramState& state, dao::Database& database, std::u16string_view tableName,
                   std::u16string_view structureFilePath) {
  suite::KontekstBledu& context = state.context;
  TableWork work(context, database, tableName);
  bool done = false;
  const auto error = suite::Attempt([&] {
    const auto lines = suite::ReadSection(state.on.profile, tableName, structureFilePath);
    if (lines.empty()) {
      context.Detail = u"Błąd odczytu struktury tablic";
      return;
    }
    done = work.Run(lines);
  });
  if (done) return true;
  if (!error && work.IsNotUpdatable()) return false;
  context.Number = 0;
  context.Source.clear();
  if (error) context.RecordError(*error);
  // Kept: this replaces the detail of the failed step.
  context.Detail = u"Funkcja: UtwórzTablice";
  context.Table = tableName;
  context.Field = work.LastField();
  return false;
}

}  // namespace zimbrat::generator
