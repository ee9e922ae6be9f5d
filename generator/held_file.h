// A database held against writers, and what it was when the hold began.
#pragma once

#include "platform/files.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::generator {

class HeldFile {
 public:
  // `path` is the file itself, no link. Error 70 while somebody has it open for writing.
  HeldFile(platform::Files& files, std::u16string_view path);

  const std::u16string& Path() const { return path_; }
  const platform::FileState& State() const { return state_; }
  // Only while it is held.
  platform::File& Content() { return *hold_; }

  // Whether the path still leads to the same file with the same size, date and first page.
  bool IsUnchanged() const;
  // Hands the hold over, for the call that replaces the file; `Renew` takes it again.
  std::unique_ptr<platform::File> HandOver() { return std::move(hold_); }
  void Renew();

 private:
  std::vector<std::byte> FirstPage(platform::File& file) const;

  platform::Files& files_;
  std::u16string path_;
  std::unique_ptr<platform::File> hold_;
  platform::FileState state_;
  std::vector<std::byte> firstPage_;
};

}  // namespace zimbrat::generator
