// A file that is to replace another one of its folder, under the working name "<target><suffix>"
// until then. It is removed unless it was put in place. A lock of the system owns the name and ends
// with the process.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "platform/files.h"

namespace zimbrat::platform {

// Of a database that is being repaired.
inline constexpr std::u16string_view kRepairSuffix = u".zimbrat-naprawa";

class WorkingFile {
 public:
  // Error 3045 while another process has the name. What an ended one left is removed.
  WorkingFile(Files& files, const std::u16string& target, std::u16string_view suffix);
  ~WorkingFile();
  WorkingFile(const WorkingFile&) = delete;
  WorkingFile& operator=(const WorkingFile&) = delete;

  const std::u16string& Path() const { return path_; }
  // With the rights and attributes of the target, which it has from then on; `source`, the target
  // held by the caller, may be null. The content must have been flushed. Error 75 for a target that
  // is read only: a copy with that attribute could neither take its place nor be removed.
  void PutInPlaceOf(const std::u16string& target, std::unique_ptr<File> source);

 private:
  Files& files_;
  std::u16string path_;
  std::unique_ptr<Hold> hold_;
  bool isInPlace_ = false;
};

}  // namespace zimbrat::platform
