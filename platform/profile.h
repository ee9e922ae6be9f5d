// The profile functions of Windows (INI files), with their buffers: texts are the file's bytes, sizes are
// in characters of the ANSI code page, and an answer that does not fit is cut as the system cuts it.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace zimbrat::platform {

class Profile {
 public:
  virtual ~Profile() = default;
  // GetPrivateProfileSectionA: entries "key=value", each ended by a NUL, a further NUL at the end.
  // Returns the count of characters without the last NUL; n - 2 when the buffer of n was too small.
  virtual std::uint32_t Section(std::string_view section, std::span<char> buffer,
                                std::u16string_view path) = 0;
  // GetPrivateProfileStringA: returns the count of characters without the NUL.
  virtual std::uint32_t String(std::string_view section, std::string_view key,
                               std::string_view defaultText, std::span<char> buffer,
                               std::u16string_view path) = 0;
  // GetPrivateProfileIntA, as a signed number.
  virtual std::int32_t Int(std::string_view section, std::string_view key, std::int32_t defaultValue,
                           std::u16string_view path) = 0;
  // WritePrivateProfileStringA: a null `value` deletes the key, a null `key` the section.
  virtual bool Write(std::string_view section, const std::string* key, const std::string* value,
                     std::u16string_view path) = 0;
};

}  // namespace zimbrat::platform
