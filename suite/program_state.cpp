#include "suite/program_state.h"

#include "platform/error_numbers.h"

namespace zimbrat::suite {

void KontekstBledu::Clear() {
  for (std::u16string* slot : {&Detail, &Line, &Table, &Field, &Index, &Relation}) slot->clear();
  Number = 0;
}

void KontekstBledu::RecordError(const platform::RunTimeError& error) {
  Number = error.Number();
  Source = error.Source();
  Description = error.Description();
}

dao::Engine& ProgramState::Engine() {
  if (!engine_ && on.makeEngine) {
    engine_ = on.makeEngine(
        [this](std::u16string_view path, bool isTyped) { return FindPassword(path, isTyped); });
  }
  if (!engine_) throw platform::OwnError(platform::kErrCannotCreateObject);
  return *engine_;
}

std::u16string ProgramState::EngineText() {
  dao::Engine& engine = Engine();
  const std::u16string name = engine.Name();
  if (name == dao::kEmbeddedEngine) return name + u" (Jet " + engine.Version() + u")";
  return u"zainstalowany w systemie: " + name + u", wersja " + engine.Version();
}

std::optional<platform::Secret> ProgramState::FindPassword(std::u16string_view path, bool isTyped) {
  if (isTyped) {
    std::optional<platform::Secret> typed = on.host.AskPassword(path);
    if (!typed) return std::nullopt;
    databasePassword = std::move(*typed);
  }
  if (databasePassword.IsEmpty()) return std::nullopt;
  return platform::Secret(databasePassword.View());
}

DatabaseSession::DatabaseSession(ProgramState& state, std::u16string_view path,
                                 std::u16string_view connect)
    : workspace_(state.Engine().CreateWorkspace(u"", u"Admin", u"")),
      database_(workspace_->OpenDatabase(path, true, false, connect)) {}

void DatabaseSession::Close() {
  database_->Close();
  database_.reset();
  workspace_->Close();
  workspace_.reset();
}

}  // namespace zimbrat::suite
