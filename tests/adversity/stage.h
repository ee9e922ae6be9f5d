// The files of one run, in memory or on the disk, behind a layer that fails as planned; and what may
// be seen of them afterwards.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "tests/adversity/tasks.h"
#include "tests/support/failing_files.h"
#include "tests/support/rounds.h"
#include "tests/support/small_volume.h"

namespace zimbrat::tests {

enum class Ground { Memory, Disk };

class Stage {
 public:
  // An installed engine sees the disk alone.
  Stage(const Task& task, Ground ground, engines::Wish wish = engines::Wish::Embedded);

  // Runs the task; whether success was told. The text is kept. What an entry program would catch
  // counts as a failure.
  bool Run();
  // Called with true directly before the task begins, with false when it has ended.
  std::function<void(bool begins)> onRun = [](bool) {};

  std::u16string PathOf(std::u16string_view name) const { return bench.PathOf(name); }
  platform::Files& Real() { return real_; }
  std::string Read(std::u16string_view name);
  void Write(std::u16string_view name, std::string_view content);
  std::vector<std::u16string> Names(std::u16string_view folder);
  // Names in the folders that the run works in, but for the database.
  std::string Leftovers();

  // After a run that ended by itself: the old file or a sound new one, as was told, nothing left in
  // the working folder, no endless questions, the template as it was. `where` stands in failures.
  void CheckOutcome(bool done, const std::string& where);
  // After the end of the process or of the power: the same, nothing told.
  void CheckTarget(const std::string& where);
  // The same command again, with nothing in its way: it succeeds and leaves nothing behind.
  void CheckCleanRun(const std::string& where);

 private:
  bool IsOld();
  bool Says(const std::vector<Answer>& answers, std::string& told);
  bool SaysEffect(std::string& told);

  const Task& task_;
  Ground ground_;
  bool isThrough_ = true;
  platform::System system_;

 public:
  SmallVolume volume;

 private:
  platform::Files& real_;

 public:
  FailingFiles files;
  DatabaseBench bench;
  std::string text;
};

// How many calls one undisturbed run makes.
std::uint64_t CountCalls(const Task& task, Ground ground, bool changesOnly);

}  // namespace zimbrat::tests
