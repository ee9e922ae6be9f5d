#include "memory_scan.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <vector>

#include "platform/text.h"

namespace zimbrat::tests {
namespace {

constexpr char kByteMask = 0x55;

// The bytes to look for, masked.
using Needle = std::string;

Needle Utf16Needle(MaskedText masked) {
  Needle needle;
  for (const char16_t unit : masked) {
    const unsigned plain = unit ^ kTextMask;
    needle += static_cast<char>((plain & 0xFF) ^ kByteMask);
    needle += static_cast<char>((plain >> 8) ^ kByteMask);
  }
  return needle;
}

Needle Utf8Needle(MaskedText masked) {
  Needle needle;
  for (const char16_t unit : masked) {
    const char16_t plain = unit ^ kTextMask;
    for (const char byte : platform::Utf8FromUtf16({&plain, 1})) {
      needle += static_cast<char>(byte ^ kByteMask);
    }
  }
  return needle;
}

std::vector<std::size_t> PlacesOf(std::string_view bytes, const Needle& needle) {
  std::vector<std::size_t> places;
  const auto first = static_cast<char>(needle[0] ^ kByteMask);
  for (std::size_t at = 0; at + needle.size() <= bytes.size(); ++at) {
    const void* hit = std::memchr(bytes.data() + at, first, bytes.size() - needle.size() + 1 - at);
    if (hit == nullptr) break;
    at = static_cast<std::size_t>(static_cast<const char*>(hit) - bytes.data());
    const auto isSame = [](char plain, char masked) { return (plain ^ kByteMask) == masked; };
    if (std::equal(needle.begin(), needle.end(), bytes.begin() + static_cast<std::ptrdiff_t>(at),
                   [&](char masked, char plain) { return isSame(plain, masked); })) {
      places.push_back(at);
    }
  }
  return places;
}

struct Region {
  std::uintptr_t start = 0;
  std::uintptr_t end = 0;
};

// What this process can write, without the reserves of the sanitizers, which no text is stored in.
std::vector<Region> WritableRegions() {
  constexpr std::uintptr_t kLargest = std::uintptr_t{1} << 30;
  std::vector<Region> regions;
  std::ifstream maps("/proc/self/maps");
  for (std::string line; std::getline(maps, line);) {
    Region region;
    char rights[5] = {};
    unsigned long long start = 0, end = 0;
    if (std::sscanf(line.c_str(), "%llx-%llx %4s", &start, &end, rights) != 3) continue;
    region = {static_cast<std::uintptr_t>(start), static_cast<std::uintptr_t>(end)};
    if (std::string_view(rights).starts_with("rw") && region.end - region.start <= kLargest) {
      regions.push_back(region);
    }
  }
  return regions;
}

// Reads memory through the system, portion by portion, each beginning with the end of the one before.
class MemoryReader {
 public:
  MemoryReader() : memory_(::open("/proc/self/mem", O_RDONLY | O_CLOEXEC)), portion_(1 << 20) {}
  ~MemoryReader() { ::close(memory_); }
  MemoryReader(const MemoryReader&) = delete;
  MemoryReader& operator=(const MemoryReader&) = delete;

  int Count(const Region& region, const Needle& needle) {
    int count = 0;
    for (std::uintptr_t at = region.start; at < region.end;) {
      const std::size_t wanted = std::min<std::size_t>(portion_.size(), region.end - at);
      const ssize_t got = ::pread(memory_, portion_.data(), wanted, static_cast<off_t>(at));
      if (got < static_cast<ssize_t>(needle.size())) break;
      const std::string_view bytes(portion_.data(), static_cast<std::size_t>(got));
      for (const std::size_t place : PlacesOf(bytes, needle)) {
        if (!IsOwn(at + place)) ++count;
      }
      if (static_cast<std::size_t>(got) == region.end - at) break;
      at += static_cast<std::size_t>(got) - needle.size() + 1;
    }
    return count;
  }

 private:
  bool IsOwn(std::uintptr_t address) const {
    const auto own = reinterpret_cast<std::uintptr_t>(portion_.data());
    return address >= own && address < own + portion_.size();
  }

  int memory_;
  std::vector<char> portion_;
};

}  // namespace

void AppendUnmasked(MaskedText masked, std::u16string& text) {
  text.reserve(text.size() + masked.size());
  for (const char16_t unit : masked) text.push_back(unit ^ kTextMask);
}

int CountIn(std::string_view bytes, MaskedText masked) {
  return static_cast<int>(PlacesOf(bytes, Utf16Needle(masked)).size() +
                          PlacesOf(bytes, Utf8Needle(masked)).size());
}

int CountInMemory(MaskedText masked) {
  MemoryReader reader;
  int count = 0;
  for (const Needle& needle : {Utf16Needle(masked), Utf8Needle(masked)}) {
    for (const Region& region : WritableRegions()) count += reader.Count(region, needle);
  }
  return count;
}

}  // namespace zimbrat::tests
