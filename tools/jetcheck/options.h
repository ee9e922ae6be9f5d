// What the command line asks for.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::jetcheck {

extern const std::u16string_view kHelp;

struct Options {
  std::vector<std::u16string> paths;
  bool wantsRepair = false;
  bool wantsJson = false;
  bool wantsKeys = false;
  bool wantsUnused = false;
  bool wantsHelp = false;
  bool isMisused = false;  // no file, or an option that is none
};

Options ReadOptions(const std::vector<std::u16string>& words);

}  // namespace zimbrat::jetcheck
