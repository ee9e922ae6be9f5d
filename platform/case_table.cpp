// Upper and lower case of Latin, Greek, Cyrillic and Armenian letters, as the case-insensitive names of Windows
// compare: one unit becomes one unit, dotless i and sharp s stay.
#include <algorithm>
#include <array>
#include <iterator>

#include "platform/text.h"

namespace zimbrat::platform {
namespace {

// Every `step`-th unit from `first` to `last` has its capital `distance` below.
struct CaseRange {
  char16_t first, last;
  int step, distance;
};

constexpr CaseRange kCaseRanges[] = {
    {0x0061, 0x007A, 1, 32},    {0x00E0, 0x00F6, 1, 32},    {0x00F8, 0x00FE, 1, 32},
    {0x00FF, 0x00FF, 1, -121},  {0x0101, 0x012F, 2, 1},     {0x0133, 0x0137, 2, 1},
    {0x013A, 0x0148, 2, 1},     {0x014B, 0x0177, 2, 1},     {0x017A, 0x017E, 2, 1},
    {0x01CE, 0x01DC, 2, 1},     {0x01DF, 0x01EF, 2, 1},     {0x01F5, 0x01F5, 1, 1},
    {0x01F9, 0x021F, 2, 1},     {0x0223, 0x0233, 2, 1},     {0x03AC, 0x03AC, 1, 38},
    {0x03AD, 0x03AF, 1, 37},    {0x03B1, 0x03C1, 1, 32},    {0x03C2, 0x03C2, 1, 31},
    {0x03C3, 0x03CB, 1, 32},    {0x03CC, 0x03CC, 1, 64},    {0x03CD, 0x03CE, 1, 63},
    {0x03D9, 0x03EF, 2, 1},     {0x0430, 0x044F, 1, 32},    {0x0450, 0x045F, 1, 80},
    {0x0461, 0x0481, 2, 1},     {0x048B, 0x04BF, 2, 1},     {0x04C2, 0x04CE, 2, 1},
    {0x04CF, 0x04CF, 1, 15},    {0x04D1, 0x052F, 2, 1},     {0x0561, 0x0586, 1, 48},
    {0x1E01, 0x1E95, 2, 1},     {0x1EA1, 0x1EFF, 2, 1},     {0xFF41, 0xFF5A, 1, 32},
};

}  // namespace

char16_t UpperCase(char16_t unit) {
  if (unit < 0x80) return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
  const auto* range = std::lower_bound(
      std::begin(kCaseRanges), std::end(kCaseRanges), unit,
      [](const CaseRange& candidate, char16_t wanted) { return candidate.last < wanted; });
  if (range == std::end(kCaseRanges) || unit < range->first) return unit;
  if ((unit - range->first) % range->step != 0) return unit;
  return static_cast<char16_t>(unit - range->distance);
}

// From the end, so that sigma comes before its final form.
char16_t LowerCase(char16_t unit) {
  for (auto range = std::rbegin(kCaseRanges); range != std::rend(kCaseRanges); ++range) {
    const int small = unit + range->distance;
    if (small >= range->first && small <= range->last && (small - range->first) % range->step == 0) {
      return static_cast<char16_t>(small);
    }
  }
  return unit;
}

}  // namespace zimbrat::platform
