// One relation of a structure file: appended whole with all its fields, or completed where it
// exists.
#include "generator/ModGeneruj.h"

#include "find_exactly.h"
#include "suite/ModPrgFun.h"
#include "suite/manners.h"
#include "platform/error_numbers.h"

#include <memory>

namespace zimbrat::generator {
namespace {

struct RelationOrder {
  std::u16string_view name;
  std::u16string_view line;
  std::u16string_view path;
};

void CompleteFields(dao::Relation& relation, const std::vector<suite::SectionEntry>& lines) {
  RelationFieldLine decoded;
  for (const suite::SectionEntry& line : lines) {
    if (line.key != u"Field") continue;
    DecodeRelationFieldLine(line.value, decoded);
    if (FindExactly(*relation.Fields(), decoded.name)) continue;
    relation.Fields()->Append(relation.CreateField(decoded.name));
    relation.Fields()->Item(decoded.name)->SetForeignName(decoded.foreignName);
  }
}

// False, with the context filled, when the section or the line cannot be read.
bool CreateOrComplete(ProgramState& state, dao::Database& database, const RelationOrder& order) {
  suite::KontekstBledu& context = state.context;
  const auto lines = suite::ReadSection(state.on.profile, order.name, order.path);
  if (lines.empty()) {
    context.Relation = order.name;
    context.Detail = u"Błąd odczytu pól relacji ";
    context.Line = order.line;
    return false;
  }
  RelationLine decoded;
  if (!DecodeRelationLine(order.line, decoded)) {
    context.Table = decoded.table;
    context.Relation = order.name;
    context.Detail = u"Błąd dekodowania relacji " + std::u16string(order.line);
    context.Line = order.line;
    return false;
  }
  std::shared_ptr<dao::Relation> relation = FindExactly(*database.Relations(), order.name);
  const bool exists = relation != nullptr;
  if (!exists) {
    relation = database.CreateRelation(order.name, decoded.table, decoded.foreignTable,
                                       decoded.attributes);
    relation->SetName(order.name);
  }
  CompleteFields(*relation, lines);
  if (!exists) database.Relations()->Append(relation);
  return true;
}

}  // namespace

bool UtwórzRelacje(ProgramState& state, dao::Database& database, std::u16string_view relationName,
                   std::u16string_view relationLine, std::u16string_view structureFilePath) {
  bool done = false;
  const auto error = suite::Attempt([&] {
    done = CreateOrComplete(state, database, {relationName, relationLine, structureFilePath});
  });
  if (done) return true;
  state.context.Number = error ? error->Number() : 0;
  state.context.Source = error ? error->Source() : std::u16string();
  // Kept: the description is asked of the error object under the name "Decription", which it does
  // not have, so that every failure of a relation reaches the user as this error.
  throw platform::OwnError(platform::kErrNoSuchMember);
}

}  // namespace zimbrat::generator
