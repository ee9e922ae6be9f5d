// Every offset and size of the Jet 4 file format. Integers are little-endian unless a line says
// otherwise; a page is 4096 bytes and page n begins at n * 4096. The figures were read off files that
// Access made, and agree with the public descriptions of the format.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zimbrat::jet {

inline constexpr std::size_t kPageSize = 4096;
inline constexpr std::uint32_t kMaxPages = 0x80000;  // 2 GB
using PageNumber = std::uint32_t;

// Byte 0 of a page; byte 1 is always 1.
inline constexpr std::uint8_t kPageHeader = 0x00;
inline constexpr std::uint8_t kPageData = 0x01;
inline constexpr std::uint8_t kPageDefinition = 0x02;
inline constexpr std::uint8_t kPageIndexNode = 0x03;
inline constexpr std::uint8_t kPageIndexLeaf = 0x04;
inline constexpr std::uint8_t kPageMapBits = 0x05;

// Page 0.
inline constexpr std::size_t kOffsetSignature = 0x04;      // "Standard Jet DB", NUL
inline constexpr std::size_t kOffsetEngineVersion = 0x14;  // 0 Jet 3, 1 Jet 4, above ACE
inline constexpr std::size_t kOffsetMasked = 0x18;         // masked with a fixed stream ...
inline constexpr std::size_t kSizeMasked = 0x80;           // ... up to 0x98
inline constexpr std::size_t kOffsetGlobalMap = 0x18;      // row pointer of the map of free pages
inline constexpr std::size_t kOffsetSecondMap = 0x1C;
inline constexpr std::size_t kOffsetSystemTables = 0x20;   // four page numbers
inline constexpr std::size_t kOffsetCodePage = 0x3C;       // u16
inline constexpr std::size_t kOffsetEncodingKey = 0x3E;    // u32, 0 = pages are plain
inline constexpr std::size_t kOffsetPassword = 0x42;       // 40 bytes
inline constexpr std::size_t kSizePassword = 40;
inline constexpr std::size_t kOffsetEngineBuild = 0x6A;    // u32
inline constexpr std::size_t kOffsetLanguage = 0x6E;       // u16, sort order of the file
inline constexpr std::size_t kOffsetCollationVersion = 0x71;
inline constexpr std::size_t kOffsetCreated = 0x72;        // Double
inline constexpr std::size_t kOffsetFormatMark = 0x98;     // 54 06 00 00, then "4.0"
inline constexpr std::size_t kOffsetCommitBytes = 0xE00;   // 256 words

// Fixed pages.
inline constexpr PageNumber kGlobalMapPage = 1;
inline constexpr PageNumber kObjectsPage = 2;
inline constexpr PageNumber kAcesPage = 3;
inline constexpr PageNumber kQueriesPage = 4;
inline constexpr PageNumber kRelationshipsPage = 5;

// Data page.
inline constexpr std::size_t kOffsetFreeBytes = 2;  // also of index and definition pages
inline constexpr std::size_t kOffsetOwner = 4;      // definition page; 0 of usage-map pages
inline constexpr std::size_t kOffsetRowCount = 12;
inline constexpr std::size_t kOffsetRowTable = 14;
inline constexpr std::size_t kSizeRowSlot = 2;
inline constexpr std::uint16_t kRowOffsetMask = 0x1FFF;
inline constexpr std::uint16_t kRowMoved = 0x4000;    // a pointer to the row stands here
inline constexpr std::uint16_t kRowHidden = 0x8000;   // target of such a pointer; both bits: deleted
inline constexpr std::uint16_t kRowDeleted = kRowMoved | kRowHidden;
inline constexpr std::uint32_t kOwnerLongValues = 0x4C41564C;  // "LVAL"
inline constexpr std::size_t kMaxRowSlots = 255;
inline constexpr std::size_t kMaxRowSize = 4060;

// Usage maps.
inline constexpr std::uint8_t kMapInline = 0;
inline constexpr std::uint8_t kMapReference = 1;
inline constexpr std::size_t kSizeMapRow = 69;
inline constexpr std::size_t kOffsetMapFirstPage = 1;      // inline kind: u32
inline constexpr std::size_t kOffsetMapBits = 5;           // inline kind
inline constexpr std::uint32_t kMapInlinePages = 512;
inline constexpr std::size_t kOffsetMapPages = 1;          // reference kind: 17 page numbers
inline constexpr std::size_t kMapReferences = 17;
inline constexpr std::size_t kOffsetMapPageBits = 4;       // on a page of type 5
inline constexpr std::uint32_t kMapPagePages = (kPageSize - kOffsetMapPageBits) * 8;  // 32736

// Table definition; offsets count from the start of its first page.
inline constexpr std::size_t kOffsetNextDefinitionPage = 4;
inline constexpr std::size_t kSizeDefinitionPageHeader = 8;
inline constexpr std::size_t kOffsetDefinitionLength = 8;
inline constexpr std::size_t kOffsetDefinitionMark = 12;  // 1625
inline constexpr std::uint32_t kDefinitionMark = 1625;
inline constexpr std::size_t kOffsetTableRows = 16;
inline constexpr std::size_t kOffsetCounter = 20;
inline constexpr std::size_t kOffsetCounterStep = 24;
inline constexpr std::size_t kOffsetTableType = 40;       // 'N' user, 'S' system
inline constexpr std::size_t kOffsetMaxColumns = 41;      // highest id ever + 1
inline constexpr std::size_t kOffsetVariableColumns = 43; // highest variable index + 1
inline constexpr std::size_t kOffsetColumns = 45;
inline constexpr std::size_t kOffsetLogicalIndexes = 47;
inline constexpr std::size_t kOffsetRealIndexes = 51;
inline constexpr std::size_t kOffsetOwnedMap = 55;        // row pointer
inline constexpr std::size_t kOffsetFreeMap = 59;         // row pointer
inline constexpr std::size_t kSizeDefinitionHead = 63;
inline constexpr std::size_t kSizeIndexCounts = 12;
inline constexpr std::size_t kSizeColumn = 25;
inline constexpr std::size_t kSizeRealIndex = 52;
inline constexpr std::size_t kSizeLogicalIndex = 28;
inline constexpr std::size_t kSizeLongValueMaps = 10;
inline constexpr std::uint32_t kRealIndexMark = 1923;
inline constexpr std::uint8_t kTableUser = 0x4E;
inline constexpr std::uint8_t kTableSystem = 0x53;
inline constexpr std::size_t kMaxColumns = 255;
inline constexpr std::size_t kMaxIndexes = 32;
inline constexpr std::size_t kMaxIndexColumns = 10;
inline constexpr std::size_t kMaxNameLength = 64;

// Column types are DAO's numbers, but for one.
inline constexpr std::int16_t kColumnTypeDecimal = 16;
// A fixed block of bytes, met in MSysAccessObjects (3992 bytes).
inline constexpr std::int16_t kColumnTypeBlock = 17;

// Column flags.
inline constexpr std::uint8_t kColumnFixed = 0x01;
inline constexpr std::uint8_t kColumnNullable = 0x02;
inline constexpr std::uint8_t kColumnCounter = 0x04;
inline constexpr std::uint8_t kColumnSystem = 0x10;
inline constexpr std::uint8_t kColumnSid = 0x20;
inline constexpr std::uint8_t kColumnAutoGuid = 0x40;
inline constexpr std::uint8_t kColumnHyperlink = 0x80;
inline constexpr std::uint8_t kColumnCompressed = 0x01;   // second flag byte

// Index flags.
inline constexpr std::uint8_t kIndexUnique = 0x01;
inline constexpr std::uint8_t kIndexIgnoreNulls = 0x02;
inline constexpr std::uint8_t kIndexRequired = 0x08;
inline constexpr std::uint8_t kIndexAlways = 0x80;

// Logical index: kind, and which end of a relationship.
inline constexpr std::uint8_t kIndexPlain = 0;
inline constexpr std::uint8_t kIndexPrimary = 1;
inline constexpr std::uint8_t kIndexRelation = 2;
inline constexpr std::uint8_t kEndReferenced = 1;
inline constexpr std::uint8_t kEndReferring = 2;
inline constexpr std::uint8_t kCascadeNone = 4;

// Index page; fields of the header little-endian, all inside an entry big-endian.
inline constexpr std::size_t kOffsetPreviousLeaf = 12;
inline constexpr std::size_t kOffsetNextLeaf = 16;
inline constexpr std::size_t kOffsetTail = 20;
inline constexpr std::size_t kOffsetPrefixLength = 24;    // u16
inline constexpr std::size_t kOffsetLevel = 26;
inline constexpr std::size_t kOffsetEntryMask = 27;       // 453 bytes: bit i = an entry ends before i
inline constexpr std::size_t kSizeEntryMask = 453;
inline constexpr std::size_t kOffsetEntries = 480;
inline constexpr std::size_t kSizeEntries = kPageSize - kOffsetEntries;  // 3616
inline constexpr std::size_t kSizeLeafPointer = 4;        // page (3), row (1)
inline constexpr std::size_t kSizeNodePointer = 8;        // the same and the child page (4)
inline constexpr std::size_t kMaxKeyLength = 1190;        // so that halving a page always suffices

// Long values.
inline constexpr std::size_t kSizeLongValueDescriptor = 12;
inline constexpr std::uint32_t kLongValueLengthMask = 0x3FFFFFFF;
inline constexpr std::uint32_t kLongValueInline = 0x80000000;
inline constexpr std::uint32_t kLongValueSingle = 0x40000000;
inline constexpr std::size_t kMaxInlineLongValue = 64;
inline constexpr std::size_t kMaxLongValueRow = 4076;     // its next pointer included, in a chain

}  // namespace zimbrat::jet
