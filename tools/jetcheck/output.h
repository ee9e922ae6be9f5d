// What jetcheck says: lines for people, or JSON.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "jet/repair.h"

namespace zimbrat::jetcheck {

struct FileResult {
  std::u16string path;
  int status = 0;                           // as the exit status
  std::u16string failure;                   // why it could not be checked or repaired
  std::vector<jet::Fault> faults;           // before the repair
  std::optional<jet::RepairReport> repair;  // when it was asked for and done
};

// A line for each fault, then one for each table that was repaired and for each of its losses.
std::u16string LinesOf(const FileResult& result);
std::u16string JsonOf(const FileResult& result);
std::u16string LinesOf(const jet::KeyCounts& keys);

}  // namespace zimbrat::jetcheck
