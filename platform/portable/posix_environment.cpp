#include "posix_environment.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/text.h"

namespace zimbrat::platform {

std::u16string PosixEnvironment::Variable(std::u16string_view name) {
  const char* value = std::getenv(Utf8FromUtf16(name).c_str());
  return value == nullptr ? std::u16string() : Utf16FromUtf8(value);
}

std::u16string PosixEnvironment::ProgramFolder() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  if (error) return CurrentFolder();
  return Utf16FromUtf8(program.parent_path().native());
}

std::u16string PosixEnvironment::CurrentFolder() {
  std::error_code error;
  return Utf16FromUtf8(std::filesystem::current_path(error).native());
}

void PosixEnvironment::SetCurrentFolder(std::u16string_view folder) {
  std::error_code error;
  std::filesystem::current_path(Utf8FromUtf16(folder), error);
}

std::u16string PosixEnvironment::TemporaryFolder() {
  for (const std::u16string_view name : {u"TEMP", u"TMPDIR"}) {
    if (std::u16string folder = Variable(name); !folder.empty()) return folder;
  }
  return Utf16FromUtf8(OwnFolderIn(P_tmpdir));
}

std::string OwnFolderIn(const std::string& parent) {
  std::string folder = parent + "/zimbrat-" + std::to_string(::geteuid());
  ::mkdir(folder.c_str(), 0700);
  struct stat found;
  const bool isOwn = ::lstat(folder.c_str(), &found) == 0 && S_ISDIR(found.st_mode) &&
                     found.st_uid == ::geteuid() && (found.st_mode & (S_IWGRP | S_IWOTH)) == 0;
  return isOwn ? folder : parent;
}

}  // namespace zimbrat::platform
