// jetcheck: verifies database files, and repairs them when asked to.
#include <algorithm>
#include <string>
#include <vector>

#include "options.h"
#include "output.h"
#include "platform/json.h"
#include "platform/run_time_error.h"
#include "platform/system.h"

namespace {

using namespace zimbrat;
using jetcheck::FileResult;

enum Status { kSound = 0, kFaults = 1, kCannotOpen = 2 };

class JetCheck {
 public:
  JetCheck(platform::System& system, const jetcheck::Options& options)
      : system_(system), options_(options) {}

  int Run();

 private:
  FileResult Handle(const std::u16string& path);
  void Check(FileResult& result);
  void Repair(FileResult& result);
  void Write(const FileResult& result);

  platform::System& system_;
  const jetcheck::Options& options_;
  jet::KeyCounts keys_;
};

void JetCheck::Check(FileResult& result) {
  jet::CheckOptions options;
  if (options_.wantsKeys) options.keyCounts = &keys_;
  options.reportUnused = options_.wantsUnused;
  result.faults = jet::CheckFile(*system_.files, result.path, options);
  result.status = jet::HasErrors(result.faults) ? kFaults : kSound;
}

void JetCheck::Repair(FileResult& result) {
  result.repair = jet::RepairDatabaseFile(*system_.files, *system_.clock, result.path);
  result.faults = result.repair->found;
  result.status = result.repair->IsAnythingLost() ? kFaults : kSound;
}

FileResult JetCheck::Handle(const std::u16string& path) {
  FileResult result;
  result.path = path;
  try {
    options_.wantsRepair ? Repair(result) : Check(result);
  } catch (const std::exception&) {
    result.failure = platform::CurrentRunTimeError().Description();
    result.status = kCannotOpen;
  }
  return result;
}

void JetCheck::Write(const FileResult& result) {
  system_.console->WriteOutput(jetcheck::LinesOf(result));
  if (!result.failure.empty())
    system_.console->WriteError(result.path + u": " + result.failure + u"\n");
}

int JetCheck::Run() {
  int worst = kSound;
  const auto handle = [&](const std::u16string& path) {
    FileResult result = Handle(path);
    worst = std::max(worst, result.status);
    return result;
  };
  if (options_.wantsJson) {
    system_.console->WriteOutput(platform::JsonArray(options_.paths,
                                                     [&](const std::u16string& path) {
                                                       return jetcheck::JsonOf(handle(path));
                                                     }) +
                                 u"\n");
    return worst;
  }
  for (const std::u16string& path : options_.paths) Write(handle(path));
  system_.console->WriteOutput(jetcheck::LinesOf(keys_));
  return worst;
}

}  // namespace

int main(int argc, char** argv) {
  platform::System system = platform::MakeSystem(argc, argv);
  const jetcheck::Options options = jetcheck::ReadOptions(system.console->Arguments());
  if (options.wantsHelp) {
    system.console->WriteOutput(jetcheck::kHelp);
    return kSound;
  }
  if (options.isMisused) {
    system.console->WriteError(jetcheck::kHelp);
    return kCannotOpen;
  }
  return JetCheck(system, options).Run();
}
