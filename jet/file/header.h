// Page 0 of a database file: what kind of file it is, how its pages are encoded, the password, the sort
// order.
//
//   offset  size  meaning
//   04      16    "Standard Jet DB", NUL
//   14      4     engine version, 1 = Jet 4
//   18      128   masked with a constant RC4 stream:
//     18, 1C      row pointers of the global maps; 20.. the four system tables
//     3C          code page; 3E encoding key; 42 password, XORed with the creation day
//     6A          build of the engine; 6E language; 71 version of the collation; 72 creation time
//   98      7     54 06 00 00 "4.0"
//   E00     512   commit bytes
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "jet/file/bytes.h"
#include "jet/file/format.h"
#include "platform/secret.h"

namespace zimbrat::jet {

// What a new file takes over from a file of the real engine: creation time, build and the mask of its
// two-byte SIDs belong together, because how the mask follows from the time is not known.
struct HeaderOrigin {
  std::uint16_t codePage;
  std::uint32_t engineBuild;
  std::uint16_t language;
  std::array<std::uint8_t, 8> created;  // Double, little-endian
  std::array<std::uint8_t, 2> sidMask;
};
// General sort order, code page 1252; read off a file made through ADO.
extern const HeaderOrigin kGeneralOrigin;

struct FileHeader {
  std::uint16_t codePage = 0;
  std::uint32_t encodingKey = 0;
  std::uint16_t language = 0;
  std::uint8_t collationVersion = 0;

  // Of other sort orders no table is known: their text indexes can be read over, not written.
  bool HasGeneralOrder() const { return language == 0x0409 && collationVersion == 0; }
};

// Error 3343 for what is no Jet 4 file; `path` goes into the text.
FileHeader DecodeHeader(ConstBytes page, std::u16string_view path);

// Of a page that is Jet 4's; empty: none.
platform::Secret DecodePassword(ConstBytes page);

void BuildHeader(Bytes page, const HeaderOrigin& origin, std::uint32_t encodingKey);

// Page 0 of another file, for a new one that is to keep its password, sort order and creation time:
// the fixed fields as they must be, and another encoding key.
void RenewHeader(Bytes page, std::uint32_t encodingKey);

// Masks or unmasks the masked area of page 0.
void ToggleHeaderMask(Bytes page);

// At most 20 units (error 3001); empty clears it.
void WritePassword(Bytes page, std::u16string_view password);

}  // namespace zimbrat::jet
