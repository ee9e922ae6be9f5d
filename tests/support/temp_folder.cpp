#include "tests/support/temp_folder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

namespace zimbrat::tests {
namespace fs = std::filesystem;

TempFolder::TempFolder() {
  std::random_device random;
  do {
    path_ = fs::canonical(fs::temp_directory_path()) /
            ("zimbrat-" + std::to_string(random()) + "-" + std::to_string(random()));
  } while (!fs::create_directory(path_));
}

TempFolder::~TempFolder() {
  std::error_code error;
  for (fs::recursive_directory_iterator entry(path_, error), end; !error && entry != end;
       entry.increment(error)) {
    fs::permissions(*entry, fs::perms::owner_all, fs::perm_options::add, error);
  }
  fs::remove_all(path_, error);
}

std::u16string TempFolder::PathOf(std::u16string_view name) const {
  return (path_ / fs::path(name)).make_preferred().u16string();
}

void TempFolder::Write(std::u16string_view name, std::string_view bytes) const {
  const fs::path file(PathOf(name));
  fs::create_directories(file.parent_path());
  std::ofstream stream(file, std::ios::binary | std::ios::trunc);
  stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (!stream.flush()) throw std::runtime_error("cannot write " + file.string());
}

std::string TempFolder::Read(std::u16string_view name) const {
  const fs::path file(PathOf(name));
  std::ifstream stream(file, std::ios::binary);
  if (!stream) throw std::runtime_error("cannot read " + file.string());
  return std::string(std::istreambuf_iterator<char>(stream), {});
}

bool TempFolder::Exists(std::u16string_view name) const { return fs::exists(fs::path(PathOf(name))); }

std::vector<std::u16string> TempFolder::Names() const {
  std::vector<std::u16string> names;
  for (const fs::directory_entry& entry : fs::directory_iterator(path_)) {
    names.push_back(entry.path().filename().u16string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace zimbrat::tests
