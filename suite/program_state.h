// The program-wide state: one value made by the entry program and handed down by reference.
#pragma once

#include "platform/clock.h"
#include "platform/controls.h"
#include "platform/dao.h"
#include "platform/environment.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/profile.h"
#include "platform/registry.h"
#include "platform/run_time_error.h"
#include "platform/secret.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::suite {

// The wizard's four tasks.
enum class Task { Nowa, Dodaj, Wzorzec, Sprawdz };

// The generation engine's record of its last failure. Every driver clears it first; a routine that
// fails fills the slots that it knows.
struct KontekstBledu {
  std::u16string Detail;
  std::u16string Line;
  std::u16string Table;
  std::u16string Field;
  std::u16string Index;
  std::u16string Relation;
  std::int32_t Number = 0;
  std::u16string Source;
  std::u16string Description;

  // Number and texts of the place; source and description stay until the next error.
  void Clear();
  void RecordError(const platform::RunTimeError& error);
};

// A password for that database: the one that is held, or, `isTyped`, what a person types now; that one is held from
// then on, since the database is opened next. Nothing when there is none.
using PasswordOf = std::function<std::optional<platform::Secret>(std::u16string_view path, bool isTyped)>;

// What the program runs on.
struct Surroundings {
  platform::Files& files;
  platform::Registry& registry;
  platform::Profile& profile;
  platform::Clock& clock;
  platform::Environment& environment;
  platform::Host& host;
  // Called at most once, when a database is first needed; throws where there is no engine. `password` is for
  // protected databases that are to be repaired.
  std::function<std::shared_ptr<dao::Engine>(const PasswordOf& password)> makeEngine;
};

class ProgramState {
 public:
  explicit ProgramState(Surroundings surroundings) : on(std::move(surroundings)) {}
  ProgramState(const ProgramState&) = delete;
  ProgramState& operator=(const ProgramState&) = delete;

  // The database engine, made on first use and kept.
  dao::Engine& Engine();
  // "wbudowany (Jet 4.0)": which one it is, for people. Throws where there is none.
  std::u16string EngineText();

  Surroundings on;
  Task task = Task::Nowa;  // the option chosen on the start page
  KontekstBledu context;
  std::optional<platform::RunTimeError> openingError;  // of the last database that could not be opened
  platform::Secret databasePassword;
  std::u16string ArgAuto;  // not empty: an automatic run
  std::u16string ArgBaza;
  std::u16string StatusKey;        // set in an automatic run only
  std::u16string structureFolder;  // empty: the program's own
  std::u16string workFolder;       // nothing assigns it: the system's is used
  std::u16string defaultFolder;
  std::u16string backupFolder;  // nothing assigns it: recorded databases get an empty text
  std::u16string errorFolder;   // empty: the program's own
  std::u16string mailMethod;
  std::u16string helpFile;
  std::vector<const platform::Form*> forms;  // that are loaded, in the order of loading

 private:
  std::optional<platform::Secret> FindPassword(std::u16string_view path, bool isTyped);

  std::shared_ptr<dao::Engine> engine_;
};

// A database of one routine: a workspace of its own, opened exclusively, closed with the object.
// `Close` is the explicit end, which can fail.
class DatabaseSession {
 public:
  DatabaseSession(ProgramState& state, std::u16string_view path, std::u16string_view connect);
  dao::Database& Database() { return *database_; }
  void Close();

 private:
  std::shared_ptr<dao::Workspace> workspace_;
  std::shared_ptr<dao::Database> database_;
};

// The form counts as loaded while in scope.
class Loaded {
 public:
  Loaded(ProgramState& state, const platform::Form& form) : forms_(state.forms), form_(&form) {
    forms_.push_back(form_);
  }
  ~Loaded() { std::erase(forms_, form_); }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;

 private:
  std::vector<const platform::Form*>& forms_;
  const platform::Form* form_;
};

// The hourglass while in scope.
class Hourglass {
 public:
  explicit Hourglass(platform::Host& host) : host_(host) { host_.SetBusy(true); }
  ~Hourglass() { host_.SetBusy(false); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

 private:
  platform::Host& host_;
};

}  // namespace zimbrat::suite
