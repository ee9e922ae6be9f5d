// The registry as the suite uses it. Operations answer with the system's result codes and throw
// nothing; key paths are separated by `\`.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::platform {

inline constexpr std::int32_t kRegistrySuccess = 0;
inline constexpr std::int32_t kRegistryNotFound = 2;       // key or value
inline constexpr std::int32_t kRegistryAccessDenied = 5;
inline constexpr std::int32_t kRegistryInvalidHandle = 6;
inline constexpr std::int32_t kRegistryWriteFault = 29;
inline constexpr std::int32_t kRegistryInvalidParameter = 87;
inline constexpr std::int32_t kRegistryNoMoreItems = 259;
inline constexpr std::int32_t kRegistryCorrupt = 1015;

inline constexpr std::uint32_t kRegSz = 1;
inline constexpr std::uint32_t kRegDword = 4;

enum class RegistryRoot { CurrentUser, LocalMachine };
enum class RegistryAccess { Read, All };

// A value as the registry holds it. `data` of kRegSz is UTF-16LE as stored, the ending NUL included when
// it was written; a size of 0 is possible.
struct RegistryValue {
  std::uint32_t type = 0;
  std::vector<std::byte> data;
};

class RegistryKey {
 public:
  virtual ~RegistryKey() = default;
  virtual std::int32_t Query(std::u16string_view name, RegistryValue& value) = 0;
  virtual std::int32_t Set(std::u16string_view name, const RegistryValue& value) = 0;
  // The subkey at `index` in the registry's order (upper-cased name); kRegistryNoMoreItems after the last.
  virtual std::int32_t EnumerateKey(std::uint32_t index, std::u16string& name) = 0;
};

class Registry {
 public:
  virtual ~Registry() = default;
  // Both leave `key` null on failure. An empty path opens the root itself.
  virtual std::int32_t CreateKey(RegistryRoot root, std::u16string_view path,
                                 std::unique_ptr<RegistryKey>& key) = 0;
  virtual std::int32_t OpenKey(RegistryRoot root, std::u16string_view path, RegistryAccess access,
                               std::unique_ptr<RegistryKey>& key) = 0;
};

}  // namespace zimbrat::platform
