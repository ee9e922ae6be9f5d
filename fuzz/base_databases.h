// Sound databases that the damage is done to, made by the engine itself at first use.
#pragma once

#include <span>
#include <string_view>

#include "tests/support/memory_files.h"

namespace zimbrat::fuzz {

inline constexpr const char16_t* kDatabasePath = u"baza.mdb";
inline constexpr std::u16string_view kConnect = u";pwd=haslo;";

// Small ones first: one with all types, a two-level index, long values, moved rows, relations, rules and deleted
// rows; an empty one; an encoded one with a password.
std::span<const tests::FileBytes> BaseDatabases();

}  // namespace zimbrat::fuzz
