#include "tests/support/access_files.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <span>

#include "gtest/gtest.h"

namespace zimbrat::tests {

namespace {

std::filesystem::path Folder() {
  const char* given = std::getenv("ZIMBRAT_FIXTURES");
  if (given) return given;
  return std::filesystem::path(PROJECT_FOLDER).parent_path() / "shared" / "fixtures" / "access";
}

}  // namespace

bool HasAccessFiles() {
  if (std::filesystem::exists(Folder())) return true;
  const char* ci = std::getenv("CI");
  if (ci && std::string_view(ci) == "true") ADD_FAILURE() << "no databases in " << Folder();
  return false;
}

std::filesystem::path AccessFile(std::string_view name) {
  return Folder() / name;
}

std::vector<std::filesystem::path> SoundAccessFiles() {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(Folder())) {
    const bool isRefused = entry.path().string().find("refuse") != std::string::npos;
    if (entry.path().extension() == ".mdb" && !isRefused) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> SoundAccessNames() {
  return {"common2.mdb", "comp-index.mdb", "deleted-column.mdb", "deleted-rows.mdb", "empty.mdb", "encoded.mdb",
          "fixed-text.mdb", "index.mdb", "overflow.mdb", "password.mdb", "properties.mdb"};
}

std::string TestNameOf(std::string_view file) {
  std::string name(file.substr(0, file.find('.')));
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

std::vector<std::byte> BytesOfFile(const std::filesystem::path& path) {
  std::ifstream in(path, std::ios::binary);
  const std::string text{std::istreambuf_iterator<char>(in), {}};
  const auto bytes = std::as_bytes(std::span(text));
  return {bytes.begin(), bytes.end()};
}

}  // namespace zimbrat::tests
