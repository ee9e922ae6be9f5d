// Files of a POSIX system. Sharing is told by flock, so it binds only programs that ask for it too.
#pragma once

#include "platform/files.h"

namespace zimbrat::platform {

class PosixFiles : public Files {
 public:
  std::unique_ptr<File> Open(std::u16string_view path, OpenMode mode, Sharing sharing) override;
  std::unique_ptr<File> OpenTemporary(std::u16string_view folder) override;
  std::optional<FileState> State(std::u16string_view path) override;
  void Delete(std::u16string_view path) override;
  void ReplaceHeld(std::u16string_view from, std::u16string_view to,
                   std::unique_ptr<File> held) override;
  void Move(std::u16string_view from, std::u16string_view to) override;
  void CopyAttributes(std::u16string_view from, std::u16string_view to) override;
  void CreateFolder(std::u16string_view path) override;
  std::vector<std::u16string> List(std::u16string_view folder, std::u16string_view pattern) override;
  void FlushFolder(std::u16string_view folder) override;
  std::u16string RealPath(std::u16string_view path) override;
  std::uint64_t FreeSpace(std::u16string_view folder) override;
  std::unique_ptr<Hold> TryHold(std::u16string_view path) override;
};

}  // namespace zimbrat::platform
