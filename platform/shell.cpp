#include "platform/shell.h"

namespace zimbrat::platform {

std::u16string Shell::BrowseForFolder(std::u16string_view, unsigned, int) { return {}; }

std::u16string Shell::OpenFileDialog(const FileDialog&) { return {}; }

bool Shell::Open(std::u16string_view) { return false; }

}  // namespace zimbrat::platform
