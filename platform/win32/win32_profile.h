// The profile functions of Windows. The ANSI calls hand out a file's bytes unchanged; only for a path that
// the system's code page cannot spell do the wide ones stand in, whose texts are converted by that page.
#pragma once

#include "platform/profile.h"

namespace zimbrat::platform {

class Win32Profile : public Profile {
 public:
  std::uint32_t Section(std::string_view section, std::span<char> buffer,
                        std::u16string_view path) override;
  std::uint32_t String(std::string_view section, std::string_view key, std::string_view defaultText,
                       std::span<char> buffer, std::u16string_view path) override;
  std::int32_t Int(std::string_view section, std::string_view key, std::int32_t defaultValue,
                   std::u16string_view path) override;
  bool Write(std::string_view section, const std::string* key, const std::string* value,
             std::u16string_view path) override;
};

}  // namespace zimbrat::platform
