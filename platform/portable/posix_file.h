// An open file of a POSIX system.
#pragma once

#include <string>

#include "descriptor.h"
#include "platform/files.h"

namespace zimbrat::platform {

class PosixFile : public File {
 public:
  PosixFile(Descriptor descriptor, std::u16string path);

  std::size_t ReadAt(std::uint64_t offset, std::span<std::byte> bytes) override;
  void WriteAt(std::uint64_t offset, std::span<const std::byte> bytes) override;
  std::uint64_t Size() override;
  void Resize(std::uint64_t size) override;
  void Flush() override;
  std::optional<std::uint64_t> FindLock(std::uint64_t offset, std::uint64_t size) override;

 private:
  Descriptor descriptor_;
  std::u16string path_;
};

}  // namespace zimbrat::platform
