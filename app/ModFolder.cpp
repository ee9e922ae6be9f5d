#include "app/ModFolder.h"

#include "suite/manners.h"
#include "platform/host.h"

#include <string>

namespace zimbrat::app {

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

}  // namespace zimbrat::app
