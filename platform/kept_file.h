// The damaged file, whole, beside the repaired one that lost some of it: who can get more out of it
// finds it there.
//
//   <name>.zimbrat-uszkodzona   being written, for the owner alone
//   <name>.uszkodzona           kept; with a number behind it when that name is taken
#pragma once

#include <functional>
#include <string>

#include "platform/files.h"

namespace zimbrat::platform {

class KeptFile {
 public:
  // To be made while the name of the working file is held, which keeps others off the copy too.
  // What an ended process left of one is removed.
  KeptFile(Files& files, std::u16string original, std::u16string workingPath);
  // The copy goes again while the working file is still there: nothing was replaced.
  ~KeptFile();
  KeptFile(const KeptFile&) = delete;
  KeptFile& operator=(const KeptFile&) = delete;

  // On the disk, with the attributes of the original, whose contents `source` gives. One that is
  // there already, byte for byte, is not made again.
  void Make(File& source, const std::function<void()>& pulse);
  // Empty until it is made.
  const std::u16string& Path() const { return path_; }

 private:
  void Write(File& source, const std::function<void()>& pulse);
  bool IsCopyOf(const std::u16string& path, File& source);
  void RemoveUnfinished();

  Files& files_;
  std::u16string original_;
  std::u16string workingPath_;
  std::u16string unfinished_;
  std::u16string path_;
  bool isOurs_ = false;
};

}  // namespace zimbrat::platform
