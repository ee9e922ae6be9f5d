#include "app/ModFolder.h"

#include "suite/manners.h"
#include "platform/files.h"
#include "platform/host.h"
#include "platform/text.h"

#include <string>

namespace zimbrat::app {
namespace {

bool IsFullPath(std::u16string_view path) {
  if (platform::kPathSeparator == u'/') return path.starts_with(u'/');
  return path.starts_with(u"\\\\") || path.substr(1).starts_with(u":\\");
}

}  // namespace

bool ValidateNameAndFolder(suite::ProgramState& state, std::u16string_view name,
                           std::u16string_view folder) {
  if (name.empty()) {
    state.on.host.ShowMessage(u"Wprowadź nazwę bazy danych i spróbuj ponownie.",
                              platform::kMsgInformation, u"");
    return false;
  }
  bool exists = false;
  suite::Attempt([&] { exists = state.on.files.IsFolder(folder); });
  if (exists) return true;
  state.on.host.ShowMessage(
      u"Folder: " + std::u16string(folder) + u" nie istnieje. Wprowadź nazwę istniejącego folderu.",
      platform::kMsgInformation, u"");
  return false;
}

std::u16string BrowseForFolder(platform::Shell& owner, std::u16string_view title, unsigned flags,
                               int root) {
  const std::u16string chosen = owner.BrowseForFolder(title, flags, root);
  return chosen.substr(0, chosen.find(u'\0'));
}

std::u16string FullPath(suite::ProgramState& state, std::u16string_view typed) {
  std::u16string_view text = platform::TrimBlanks(typed);
  if (text.size() > 1 && text.front() == u'"' && text.back() == u'"') {
    text = platform::TrimBlanks(text.substr(1, text.size() - 2));
  }
  // A pattern is no path: who opens it says so.
  if (text.empty() || IsFullPath(text) || platform::Contains(text, u"*")) return std::u16string(text);
  return state.on.files.RealPath(text);
}

}  // namespace zimbrat::app
