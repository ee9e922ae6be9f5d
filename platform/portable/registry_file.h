// The file behind the portable registry.
//
// 1. Every operation sees the file as it is at that moment; the parsed tree is kept only for a file that
//    still has the same bytes.
// 2. A change reads, changes and writes under a Hold on the file, so that two processes do not lose each
//    other's keys. It waits about a second for the hold.
// 3. A change is written beside, flushed, and put in place by Files::Replace.
// 4. A file that cannot be read whole is never replaced.
#pragma once

#include <functional>
#include <string>

#include "platform/files.h"
#include "registry_tree.h"

namespace zimbrat::platform {

class RegistryFile {
 public:
  RegistryFile(Files& files, std::u16string path) : files_(files), path_(std::move(path)) {}

  // Both return what the function returned, or the code of what kept it from being called. After a
  // failed change the file is as it was. A missing file is an empty registry.
  std::int32_t Read(const std::function<std::int32_t(RegistryTree&)>& use);
  std::int32_t Change(const std::function<std::int32_t(RegistryTree&)>& change);

 private:
  std::int32_t Guarded(const std::function<std::int32_t()>& work);
  // Brings tree_ up to date.
  std::int32_t Load();
  void Save(const std::string& bytes);
  void MakeFolder(std::u16string_view folder);
  std::unique_ptr<Hold> WaitForHold();

  Files& files_;
  std::u16string path_;
  bool isLoaded_ = false;
  std::string bytes_;
  RegistryTree tree_;
};

}  // namespace zimbrat::platform
