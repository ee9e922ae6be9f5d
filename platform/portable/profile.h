// The profile functions of Windows over any Files, with the answers of Windows also in odd cases.
//
// A file above 64 MiB counts as unreadable. A name without a folder belongs to the Windows folder there;
// here it names nothing, so callers pass paths. Files marked as UTF-16 are read and written as
// Windows-1250. Nothing is kept between calls.
#pragma once

#include <vector>

#include "platform/files.h"
#include "platform/profile.h"

namespace zimbrat::platform {

class PortableProfile : public Profile {
 public:
  // `files` must outlive the object.
  explicit PortableProfile(Files& files) : files_(files) {}

  std::uint32_t Section(std::string_view section, std::span<char> buffer,
                        std::u16string_view path) override;
  std::uint32_t String(std::string_view section, std::string_view key, std::string_view defaultText,
                       std::span<char> buffer, std::u16string_view path) override;
  std::int32_t Int(std::string_view section, std::string_view key, std::int32_t defaultValue,
                   std::u16string_view path) override;
  bool Write(std::string_view section, const std::string* key, const std::string* value,
             std::u16string_view path) override;

 private:
  // The file as Windows-1250; empty when it cannot be read.
  std::string Text(std::u16string_view path);
  std::optional<std::string> FindValue(std::string_view section, std::string_view key,
                                       std::u16string_view path);
  void Change(std::string_view section, const std::string* key, const std::string* value,
              std::u16string_view path);

  Files& files_;
};

}  // namespace zimbrat::platform
