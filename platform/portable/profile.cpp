#include "platform/portable/profile.h"

#include <algorithm>

#include "platform/error_numbers.h"
#include "platform/file_errors.h"
#include "platform/text.h"
#include "profile_edits.h"
#include "profile_lines.h"
#include "profile_number.h"

namespace zimbrat::platform {
namespace {

constexpr std::uint64_t kMostBytes = 64u << 20;
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

bool IsUtf16(std::string_view bytes) { return bytes.substr(0, 2) == kUtf16Mark; }

// One character for each unit, so that a place in the result is a place in the file.
std::string TextOfBytes(std::string bytes) {
  if (!IsUtf16(bytes)) return bytes;
  std::u16string units;
  for (std::size_t at = 2; at + 1 < bytes.size(); at += 2) {
    const auto low = static_cast<std::uint8_t>(bytes[at]);
    const auto high = static_cast<std::uint8_t>(bytes[at + 1]);
    units.push_back(static_cast<char16_t>(low | (high << 8)));
  }
  return Ansi1250FromUtf16(units);
}

std::string Utf16BytesOf(std::string_view text) {
  std::string bytes;
  for (const char16_t unit : Utf16FromAnsi1250(text)) {
    bytes.push_back(static_cast<char>(unit & 0xFF));
    bytes.push_back(static_cast<char>(unit >> 8));
  }
  return bytes;
}

std::string Edited(const std::string& bytes, const std::vector<ProfileEdit>& edits) {
  const bool isUtf16 = IsUtf16(bytes);
  const std::size_t width = isUtf16 ? 2 : 1, start = isUtf16 ? 2 : 0;
  std::string result;
  std::size_t position = 0;
  for (const ProfileEdit& edit : edits) {
    result.append(bytes, position, start + edit.begin * width - position);
    result += isUtf16 ? Utf16BytesOf(edit.text) : edit.text;
    position = start + edit.end * width;
  }
  return result.append(bytes, position);
}

bool IsQuoted(std::string_view value) {
  return value.size() > 1 && value.front() == value.back() &&
         (value.front() == '"' || value.front() == '\'');
}

std::string Contents(File& file, std::u16string_view path) {
  const std::uint64_t size = file.Size();
  if (size > kMostBytes) throw FileError(kErrDeviceIo, u"za duży plik", path);
  std::string bytes(static_cast<std::size_t>(size), '\0');
  // The beginning of a file would pass for a file without its last sections.
  const std::size_t count = file.ReadAt(0, std::as_writable_bytes(std::span<char>(bytes)));
  if (count < bytes.size()) throw FileError(kErrDeviceIo, u"odczyt", path);
  return bytes;
}

// Only from the first byte that differs: what stands before it cannot be lost on the way.
void PutContents(File& file, const std::string& before, const std::string& after) {
  const std::size_t common = static_cast<std::size_t>(
      std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first - before.begin());
  file.WriteAt(common, std::as_bytes(std::span<const char>(after).subspan(common)));
  if (after.size() < before.size()) file.Resize(after.size());
}

void RequireFolder(std::u16string_view path) {
  if (FolderOfPath(path).empty()) throw FileError(kErrFileNotFound, u"plik bez folderu", path);
}

std::uint32_t PutText(std::string_view text, std::span<char> buffer) {
  if (buffer.empty()) return 0;
  const std::size_t count = std::min(text.size(), buffer.size() - 1);
  std::copy_n(text.begin(), count, buffer.begin());
  buffer[count] = '\0';
  return static_cast<std::uint32_t>(count);
}

// Copies what fits; the caller closes the list.
void AppendCut(std::string_view text, std::span<char> buffer, std::size_t& used) {
  const std::size_t count = std::min(text.size(), buffer.size() - used);
  std::copy_n(text.begin(), count, buffer.begin() + static_cast<std::ptrdiff_t>(used));
  used += count;
}

}  // namespace

std::string PortableProfile::Text(std::u16string_view path) {
  try {
    RequireFolder(path);
    const std::unique_ptr<File> file = files_.Open(path, OpenMode::Read, Sharing::Readers);
    return TextOfBytes(Contents(*file, path));
  } catch (const RunTimeError&) {
    return {};
  }
}

std::uint32_t PortableProfile::Section(std::string_view section, std::span<char> buffer,
                                       std::u16string_view path) {
  if (buffer.empty()) return 0;
  buffer[0] = '\0';
  if (buffer.size() == 1) return 0;
  const std::string text = Text(path);
  ProfileSection lines(text, TrimProfileArgument(section));
  std::size_t used = 0;
  while (const auto entry = lines.NextEntry()) {
    AppendCut(entry->name, buffer, used);
    if (entry->hasValue) AppendCut("=", buffer, used);
    AppendCut(entry->value, buffer, used);
    AppendCut(std::string_view("\0", 1), buffer, used);
    if (used == buffer.size()) break;
  }
  if (used + 1 == buffer.size()) {  // an exact fit is whole, yet counted as cut
    buffer[used] = '\0';
    return static_cast<std::uint32_t>(buffer.size() - 2);
  }
  if (used == buffer.size()) used -= 2;
  buffer[used] = buffer[used + 1] = '\0';
  return static_cast<std::uint32_t>(used);
}

std::optional<std::string> PortableProfile::FindValue(std::string_view section, std::string_view key,
                                                      std::u16string_view path) {
  const std::string text = Text(path);
  ProfileSection lines(text, TrimProfileArgument(section));
  const auto entry = lines.FindEntry(TrimProfileArgument(key));
  if (!entry || !entry->hasValue) return std::nullopt;
  std::string_view value = entry->value;
  if (IsQuoted(value)) value = value.substr(1, value.size() - 2);
  // The length of a value is a 16-bit number in Windows, and so a longer one loses its end.
  return std::string(value.substr(0, value.size() % 65536));
}

std::uint32_t PortableProfile::String(std::string_view section, std::string_view key,
                                      std::string_view defaultText, std::span<char> buffer,
                                      std::u16string_view path) {
  if (const std::optional<std::string> value = FindValue(section, key, path)) {
    return PutText(*value, buffer);
  }
  return PutText(defaultText.substr(0, defaultText.find_last_not_of(' ') + 1), buffer);
}

std::int32_t PortableProfile::Int(std::string_view section, std::string_view key,
                                  std::int32_t defaultValue, std::u16string_view path) {
  const std::optional<std::string> value = FindValue(section, key, path);
  return value && !value->empty() ? NumberOfProfileValue(*value) : defaultValue;
}

void PortableProfile::Change(std::string_view section, const std::string* key,
                             const std::string* value, std::u16string_view path) {
  RequireFolder(path);
  const bool exists = files_.State(path).has_value();
  if (!exists && (key == nullptr || value == nullptr)) return;
  const std::unique_ptr<File> file =
      files_.Open(path, exists ? OpenMode::ReadWrite : OpenMode::CreateNew, Sharing::None);
  const std::string before = Contents(*file, path);
  const std::string text = TextOfBytes(before);
  const std::string_view name = TrimProfileArgument(section);
  std::vector<ProfileEdit> edits =
      key == nullptr     ? EditsToDeleteSection(text, name)
      : value == nullptr ? EditsToDeleteKey(text, name, TrimProfileArgument(*key))
                         : EditsToSet(text, name, TrimProfileArgument(*key), *value);
  if (before == kUtf16Mark && !edits.empty()) edits[0].text.insert(0, "\r\n");  // as Windows does
  const std::string after = Edited(before, edits);
  if (after != before) PutContents(*file, before, after);
}

bool PortableProfile::Write(std::string_view section, const std::string* key,
                            const std::string* value, std::u16string_view path) {
  try {
    Change(section, key, value, path);
    return true;
  } catch (const RunTimeError&) {
    return false;
  }
}

}  // namespace zimbrat::platform
