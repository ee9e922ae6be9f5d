// Databases made by Access, which lie outside the project: the folder named by ZIMBRAT_FIXTURES,
// else shared/fixtures/access beside the project's own folder.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace zimbrat::tests {

// Whether the folder is there. With CI=true its absence fails the test; otherwise the test is to be
// skipped.
bool HasAccessFiles();
std::filesystem::path AccessFile(std::string_view name);
// The sound Jet 4 databases of the folder, sorted: what is there to be refused says so in its name.
std::vector<std::filesystem::path> SoundAccessFiles();
// The names of those that every such folder has, for tests that are a case a file.
std::vector<std::string> SoundAccessNames();
// A file's name as the name of a test.
std::string TestNameOf(std::string_view file);
std::vector<std::byte> BytesOfFile(const std::filesystem::path& path);

}  // namespace zimbrat::tests
