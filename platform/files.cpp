#include "platform/files.h"

#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

std::size_t LastSeparator(std::u16string_view path) { return path.rfind(kPathSeparator); }

// "/" and "C:\" keep their separator: without it they would name something else.
bool IsRoot(std::u16string_view folder) {
  return folder.empty() || (kPathSeparator == u'\\' && folder.size() == 2 && folder[1] == u':');
}

}  // namespace

bool Files::IsFile(std::u16string_view path) {
  const std::optional<FileState> state = State(path);
  return state && !state->isFolder;
}

bool Files::IsFolder(std::u16string_view path) {
  const std::optional<FileState> state = State(path);
  return state && state->isFolder;
}

std::string Files::ReadAll(std::u16string_view path, std::uint64_t limit) {
  const std::unique_ptr<File> file = Open(path, OpenMode::Read, Sharing::All);
  const std::uint64_t size = file->Size();
  if (size > limit) throw FileError(kErrDeviceIo, u"za duży plik", path);
  std::string content(static_cast<std::size_t>(size), '\0');
  content.resize(file->ReadAt(0, std::as_writable_bytes(std::span<char>(content))));
  return content;
}

std::u16string_view FolderOfPath(std::u16string_view path) {
  const std::size_t separator = LastSeparator(path);
  if (separator == std::u16string_view::npos) return {};
  return path.substr(0, IsRoot(path.substr(0, separator)) ? separator + 1 : separator);
}

std::u16string_view NameOfPath(std::u16string_view path) {
  const std::size_t separator = LastSeparator(path);
  return separator == std::u16string_view::npos ? path : path.substr(separator + 1);
}

std::u16string JoinPath(std::u16string_view folder, std::u16string_view name) {
  std::u16string path(folder);
  if (!path.empty() && path.back() != kPathSeparator) path.push_back(kPathSeparator);
  path += name;
  return path;
}

bool MatchesPattern(std::u16string_view name, std::u16string_view pattern) {
  if (pattern == u"*.*") return true;
  std::size_t n = 0, p = 0;
  std::size_t star = std::u16string_view::npos, resume = 0;
  while (n < name.size()) {
    if (p < pattern.size() && pattern[p] == u'*') {
      star = p++;
      resume = n;
    } else if (p < pattern.size() &&
               (pattern[p] == u'?' || UpperCase(pattern[p]) == UpperCase(name[n]))) {
      ++p;
      ++n;
    } else if (star != std::u16string_view::npos) {
      p = star + 1;  // let the last star take one unit more
      n = ++resume;
    } else {
      return false;
    }
  }
  return pattern.find_first_not_of(u'*', p) == std::u16string_view::npos;
}

bool NameComesBefore(std::u16string_view a, std::u16string_view b) {
  const std::u16string upperA = UpperCase(a), upperB = UpperCase(b);
  return upperA != upperB ? upperA < upperB : a < b;
}

}  // namespace zimbrat::platform
