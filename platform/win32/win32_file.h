// An open file of Windows.
#pragma once

#include "handles.h"
#include "platform/files.h"

namespace zimbrat::platform {

class Win32File : public File {
 public:
  Win32File(FileHandle handle, std::u16string path);

  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override;
  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override;
  std::uint64_t Size() override;
  void Resize(std::uint64_t size) override;
  void Flush() override;
  std::optional<std::uint64_t> FindLock(std::uint64_t offset, std::uint64_t size) override;

 private:
  bool IsLockable(std::uint64_t offset, std::uint64_t size);

  FileHandle handle_;
  std::u16string path_;
};

}  // namespace zimbrat::platform
