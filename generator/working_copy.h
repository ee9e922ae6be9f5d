// The copy of a database on which a task works, in the working folder, named "Robocza " and the
// database's file name. Payroll lies in it: it is open to its owner alone and goes on every way out.
//
// Its name is the same for databases of one name in different folders, so it is owned through a
// lock of the system. What a killed run left under the name is replaced.
#pragma once

#include "generator/held_file.h"
#include "suite/program_state.h"
#include "platform/files.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace zimbrat::generator {

// The configured working folder, else the system's, else the program's own. Error 76 when it is no
// folder.
std::u16string WorkingFolder(suite::ProgramState& state);

class WorkingCopy {
 public:
  explicit WorkingCopy(const suite::Surroundings& on) : on_(on) {}
  ~WorkingCopy();
  WorkingCopy(const WorkingCopy&) = delete;
  WorkingCopy& operator=(const WorkingCopy&) = delete;

  // Holds the source against writers and copies it. Error 70 while another run has a copy of that
  // name, or somebody writes to the source; 58 when a file of that name is no working copy.
  void Begin(std::u16string_view source, std::u16string_view folder);

  const std::u16string& Path() const { return path_; }
  const HeldFile& Source() const { return *source_; }
  bool Exists() const { return on_.files.IsFile(path_); }
  std::unique_ptr<platform::File> OpenForReading() const;
  bool EqualsSource();
  // Ends the hold on the source; the target keeps its own where they are one file.
  void LetGoOfSource() { source_->HandOver().reset(); }
  // Deletes it. Whoever holds it for a moment is waited for.
  void Remove();

 private:
  void RequireOwnLeftover();

  const suite::Surroundings& on_;
  std::u16string path_;
  bool isOurs_ = false;
  std::unique_ptr<platform::Hold> hold_;
  std::optional<HeldFile> source_;
};

}  // namespace zimbrat::generator
