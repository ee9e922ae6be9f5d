// A folder of its own for a test, removed with everything in it at the end.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::tests {

class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  // The absolute path, without a separator at its end.
  std::u16string Path() const { return path_.u16string(); }
  // The path of a file in it, of a relative path with `/` too, with the system's separators.
  std::u16string PathOf(std::u16string_view name) const;

  // Bytes as they are. Write makes the folders on the way; Read of a missing file fails the test.
  void Write(std::u16string_view name, std::string_view bytes) const;
  std::string Read(std::u16string_view name) const;
  bool Exists(std::u16string_view name) const;
  // All names in the folder itself, sorted.
  std::vector<std::u16string> Names() const;

 private:
  std::filesystem::path path_;
};

}  // namespace zimbrat::tests
