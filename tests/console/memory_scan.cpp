#include "memory_scan.h"

#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <new>
#include <vector>

#include "platform/secret.h"

namespace zimbrat::tests {
namespace {

constexpr char kByteMask = 0x55;

// The bytes to look for, masked. Holds no memory of its own: it is searched for where memory is given back.
struct Needle {
  std::array<char, 64> bytes{};
  std::size_t size = 0;

  constexpr void Add(unsigned byte) {
    bytes[size++] = static_cast<char>((byte & 0xFF) ^ static_cast<unsigned char>(kByteMask));
  }
};

constexpr Needle Utf16Needle(MaskedText masked) {
  Needle needle;
  for (const char16_t unit : masked) {
    const auto plain = static_cast<unsigned>(unit ^ kTextMask);
    needle.Add(plain);
    needle.Add(plain >> 8);
  }
  return needle;
}

// Of letters below U+0800.
constexpr Needle Utf8Needle(MaskedText masked) {
  Needle needle;
  for (const char16_t unit : masked) {
    const auto plain = static_cast<unsigned>(unit ^ kTextMask);
    if (plain >= 0x80) needle.Add(0xC0 | plain >> 6);
    needle.Add(plain < 0x80 ? plain : 0x80 | (plain & 0x3F));
  }
  return needle;
}

// At or behind `from`; npos when it is nowhere.
std::size_t Find(std::string_view bytes, const Needle& needle, std::size_t from = 0) {
  const auto first = static_cast<char>(needle.bytes[0] ^ kByteMask);
  for (std::size_t at = from; at + needle.size <= bytes.size(); ++at) {
    const void* hit = std::memchr(bytes.data() + at, first, bytes.size() - needle.size + 1 - at);
    if (hit == nullptr) break;
    at = static_cast<std::size_t>(static_cast<const char*>(hit) - bytes.data());
    std::size_t same = 1;
    while (same < needle.size && (bytes[at + same] ^ kByteMask) == needle.bytes[same]) ++same;
    if (same == needle.size) return at;
  }
  return std::string_view::npos;
}

template <class Take>
void ForEachPlace(std::string_view bytes, const Needle& needle, Take take) {
  for (std::size_t at = Find(bytes, needle); at != bytes.npos; at = Find(bytes, needle, at + 1)) {
    take(at);
  }
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
  ~MemoryReader() {
    ::close(memory_);
    platform::WipeMemory(portion_.data(), portion_.size());
  }
  MemoryReader(const MemoryReader&) = delete;
  MemoryReader& operator=(const MemoryReader&) = delete;

  int Count(const Region& region, const Needle& needle) {
    int count = 0;
    for (std::uintptr_t at = region.start; at < region.end;) {
      const std::size_t wanted = std::min<std::size_t>(portion_.size(), region.end - at);
      const ssize_t got = ::pread(memory_, portion_.data(), wanted, static_cast<off_t>(at));
      if (got < static_cast<ssize_t>(needle.size)) break;
      const std::string_view bytes(portion_.data(), static_cast<std::size_t>(got));
      ForEachPlace(bytes, needle, [&](std::size_t place) { count += IsOwn(at + place) ? 0 : 1; });
      if (static_cast<std::size_t>(got) == region.end - at) break;
      at += static_cast<std::size_t>(got) - needle.size + 1;
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

void GiveBack(void* block) noexcept {
  constexpr Needle kNeedles[] = {Utf16Needle(kLong), Utf8Needle(kLong), Utf16Needle(kShort),
                                 Utf8Needle(kShort)};
  const std::string_view bytes(static_cast<const char*>(block), ::malloc_usable_size(block));
  for (const Needle& needle : kNeedles) {
    if (Find(bytes, needle) == bytes.npos) continue;
    std::fputs("memory was given back with a password in it\n", stderr);
    std::abort();
  }
  std::free(block);
}

}  // namespace

void AppendUnmasked(MaskedText masked, std::u16string& text) {
  text.reserve(text.size() + masked.size());
  for (const char16_t unit : masked) text.push_back(unit ^ kTextMask);
}

int CountIn(std::string_view bytes, MaskedText masked) {
  int count = 0;
  for (const Needle& needle : {Utf16Needle(masked), Utf8Needle(masked)}) {
    ForEachPlace(bytes, needle, [&](std::size_t) { ++count; });
  }
  return count;
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

void* operator new(std::size_t size) {
  if (void* block = std::malloc(std::max<std::size_t>(size, 1))) return block;
  throw std::bad_alloc();
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return std::malloc(std::max<std::size_t>(size, 1));
}
void operator delete(void* block) noexcept { zimbrat::tests::GiveBack(block); }
void operator delete(void* block, std::size_t) noexcept { zimbrat::tests::GiveBack(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { zimbrat::tests::GiveBack(block); }
