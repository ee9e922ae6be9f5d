# Turns general_collation.tsv into a C++ header: cmake -DTABLE=... -DHEADER=... -P generate_collation.cmake
# Written in CMake's own language, so that cross builds and Windows need no other program.

set(kind_N Plain)
set(kind_D Accented)
set(kind_K Kana)
set(kind_E Expansion)
set(kind_M Modifier)
set(kind_P Position)
set(kind_X Ignored)
set(kind_R Repeat)

file(STRINGS ${TABLE} lines REGEX "^[0-9A-F]")
set(ranges "")
set(expansions "")
set(expansion_count 0)
set(byte "[0-9A-F][0-9A-F]")
foreach(line IN LISTS lines)
  if(NOT line MATCHES "^([0-9A-F]+)(-([0-9A-F]+))?\t([NDKEMPXR])\t([^\t]+)\t([^\t]+)\t([^\t]+)$")
    message(FATAL_ERROR "${TABLE}: ${line}")
  endif()
  set(first ${CMAKE_MATCH_1})
  set(last "${CMAKE_MATCH_3}")
  set(kind ${kind_${CMAKE_MATCH_4}})
  set(inline ${CMAKE_MATCH_5})
  set(accent ${CMAKE_MATCH_6})
  set(kana ${CMAKE_MATCH_7})
  if("${last}" STREQUAL "")
    set(last ${first})
  endif()
  set(high 00)
  set(low 00)
  if(kind STREQUAL "Expansion")
    string(REPLACE "+" ", 0x" parts ${inline})
    string(APPEND expansions "    {0x${parts}},\n")
    math(EXPR high "${expansion_count}" OUTPUT_FORMAT HEXADECIMAL)
    string(SUBSTRING ${high} 2 -1 high)
    math(EXPR expansion_count "${expansion_count} + 1")
  elseif(inline MATCHES "^(${byte})(${byte})?$")
    set(high ${CMAKE_MATCH_1})
    set(second "${CMAKE_MATCH_2}")
    if(NOT "${second}" STREQUAL "")
      set(low ${second})
    endif()
  endif()
  if(accent STREQUAL "-")
    set(accent 02)
  endif()
  if(kana STREQUAL "-")
    set(kana 0)
  endif()
  string(APPEND ranges "    {0x${first}, 0x${last}, CollationKind::${kind}, 0x${high}, 0x${low}, 0x${accent}, ${kana}},\n")
endforeach()

file(WRITE ${HEADER}.new "// Generated from general_collation.tsv.
#pragma once

#include \"collation_range.h\"

namespace zimbrat::jet {

inline constexpr CollationRange kGeneralCollation[] = {
${ranges}};

// Zero ends a short row.
inline constexpr char16_t kGeneralExpansions[][kMaxExpansion] = {
${expansions}};

}  // namespace zimbrat::jet
")
file(RENAME ${HEADER}.new ${HEADER})
