// What a new database may be called and where it may lie, so that the file is the one that the user
// meant, on every system.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::app {

// The greatest length of a database's full path that the engine takes.
inline constexpr std::size_t kLongestPath = 255;

// Without ".mdb" at its end, in any case.
std::u16string_view WithoutExtension(std::u16string_view name);

// A sentence on what is wrong with the name (without extension), or nothing.
std::optional<std::u16string> FindNameFault(std::u16string_view name);

// The same for the folder together with the name.
std::optional<std::u16string> FindPlaceFault(std::u16string_view folder, std::u16string_view name);

// The same for paths of structure files that a driver will take as one text, cut at the separator.
std::optional<std::u16string> FindListFault(const std::vector<std::u16string>& paths,
                                            char16_t separator);

}  // namespace zimbrat::app
