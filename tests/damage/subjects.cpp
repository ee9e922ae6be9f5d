#include "subjects.h"

#include <algorithm>

#include "jet/file/rc4.h"
#include "tests/support/access_files.h"
#include "tests/support/fake_clock.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

Subject Dissected(std::string name, FileBytes bytes, std::u16string_view password) {
  Subject subject{std::move(name), bytes, DecodeHeader(PageOf(bytes, 0), kPath).encodingKey, {}};
  MemoryFiles files;
  FakeClock clock;
  files.BytesOf(kPath) = std::move(bytes);
  subject.anatomy = DissectDatabase(*OpenDatabaseFile(files, clock, kPath, true, password, {}));
  return subject;
}

}  // namespace

std::span<std::byte> PageOf(FileBytes& bytes, std::size_t page) {
  return std::span(bytes).subspan(page * kPageSize, kPageSize);
}

std::span<const std::byte> PageOf(const FileBytes& bytes, std::size_t page) {
  return std::span(bytes).subspan(page * kPageSize, kPageSize);
}

void ToggleEncoding(FileBytes& bytes, std::uint32_t key) {
  for (std::uint32_t page = 1; key != 0 && page < bytes.size() / kPageSize; ++page)
    Rc4(key ^ page, PageOf(bytes, page));
}

std::vector<std::string> FixtureNames() {
  return HasAccessFiles() ? SoundAccessNames() : std::vector<std::string>();
}

Subject MakeFixture(const std::string& name) {
  const std::u16string_view password = name == "password.mdb" ? u"password" : u"";
  return Dissected(name, BytesOfFile(AccessFile(name)), password);
}

std::vector<Recipe> SmallRecipes(std::uint32_t seed) {
  return {{"new and empty", seed, 0, 0, false},
          {"small", seed + 1, 12, 300, false},
          {"small and encoded", seed + 2, 20, 300, true},
          {"medium", seed + 3, 90, 900, false},
          {"medium and encoded", seed + 4, 90, 900, true}};
}

Recipe LargeRecipe(std::uint32_t seed) {
  return {"large", seed + 5, 500, 9000, false};
}

Subject MakeDatabase(const Recipe& recipe) {
  return Dissected(recipe.name, BytesOfNewDatabase(recipe), u"");
}

}  // namespace zimbrat::tests
