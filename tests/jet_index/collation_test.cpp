// Keys of texts, byte for byte. Most were read off index pages that Access wrote.
#include "jet/index/collation.h"

#include <string>
#include <vector>

#include "gtest/gtest.h"
#include "hex.h"

namespace zimbrat::jet {
namespace {

std::string KeyOf(std::u16string_view text, bool ascending = true) {
  std::vector<std::byte> key;
  AppendTextKey(text, ascending, key);
  return HexFromBytes(key);
}

struct KeyCase {
  const char* name;
  std::u16string text;
  const char* key;
  bool ascending = true;
};

TEST(TextKey, IsWhatAccessWrites) {
  const KeyCase cases[] = {
      {"accents", u"ääkkösiä", "4A 4A 5C 5C 64 6B 59 4A 01 13 13 02 02 13 02 02 13 00"},
      {"hyphen first", u"-1", "38 01 01 01 01 80 07 06 82 00"},
      {"control first", u"\u0003DirData", "4F 59 69 4F 4A 6D 4A 01 01 01 01 80 07 06 05 00"},
      {"kana", u"漢字仮名交じり文",
       "C0 B6 AC AC A0 0D A5 47 9F BE 7F 13 7F 43 B6 F6 01 02 02 02 02 02 03 01 01 FF 02 80 FF 80 "
       "00"},
      {"signs", u"~sq_cSök~sq_ccboKst",
       "2B 0F 6B 68 2B 03 4D 6B 64 5C 2B 0F 6B 68 2B 03 4D 4D 4C 64 5C 6B 6D 01 02 02 02 02 02 02 "
       "13 00"},
      {"empty", u"", "01 00"},
      {"blank", u" ", "01 00"},
      {"NUL", std::u16string(1, u'\0'), "01 00"},
      {"lower", u"łódź", "5E 64 4F 78 01 1F 0E 02 0E 00"},
      {"capital", u"ŁÓDŹ", "5E 64 4F 78 01 1F 0E 02 0E 00"},
      {"pangram", u"Zażółć gęślą jaźń",
       "78 4A 78 64 5E 4D 07 55 51 6B 5E 4A 07 5B 4A 78 62 01 02 02 10 0E 1F 0E 02 02 1B 0E 02 1B "
       "02 02 "
       "02 0E 0E 00"},
      {"Polish letters", u"ĄĆĘŁŃÓŚŹŻ",
       "4A 4D 51 5E 62 64 6B 78 78 01 1B 0E 1B 1F 0E 0E 0E 0E 10 00"},
      {"hyphen among accents", u"ąć-ę", "4A 4D 51 01 1B 0E 1B 01 01 01 80 0F 06 82 00"},
      {"hyphen within", u"co-op", "4D 64 64 66 01 01 01 01 80 0F 06 82 00"},
      {"apostrophe", u"O'Neil", "64 62 51 59 5E 01 01 01 01 80 0B 06 80 00"},
      {"expansion", u"Straße", "6B 6D 69 4A 6B 6B 51 01 00"},
      {"composed", u"á", "4A 01 0E 00"},
      {"decomposed", u"a\u0301", "4A 01 0E 00"},
      {"en dash", u"x–y", "75 76 01 01 01 01 80 0B 06 89 00"},
      {"no-break spaces", u"-\u00A0Á--Á\u00A0-",
       "08 02 4A 4A 08 02 01 02 0E 0E 01 01 01 80 07 06 82 80 0F 06 82 80 0F 06 82 80 17 06 82 00"},
      {"accents of an expansion", u"Ǽ-", "4A 51 01 0E 0E 01 01 01 80 0F 06 82 00"},
      {"modifier first", u"\u0301b-", "4C 01 0C 01 01 01 80 0B 06 82 00"},
      {"small kana", u"ぁあ", "7F 02 7F 02 01 01 01 A0 FF 02 80 FF 80 00"},
      {"kana and hyphen", u"あ-", "7F 02 01 01 01 FF 02 80 FF 80 FF 01 80 0B 06 82 00"},
      {"counted across a byte", u"\u0699ڧڨ", "79 F1 79 FF 7A 02 01 00"},
      {"repeat", u"か\u309D", "7F 0A 7F 0A 01 01 01 FF 02 80 FF 80 00"},
      {"repeat of nothing", u"\u309D", "01 00"},
      {"descending", u"AAqAA", "B5 B5 97 B5 B5 FE FF 00", false},
      {"descending accent", u"AAÍAA", "B5 B5 A6 B5 B5 FE FD FD F1 FF 00", false},
  };
  for (const KeyCase& c : cases) EXPECT_EQ(c.key, KeyOf(c.text, c.ascending)) << c.name;
}

TEST(TextKey, EndsWithTheFirst255Units) {
  const std::u16string blanks = std::u16string(254, u'a') + u"  x";
  EXPECT_EQ(KeyOf(std::u16string(254, u'a')), KeyOf(blanks))
      << "cut first, then blanks off the end";
  EXPECT_EQ(KeyOf(std::u16string(255, u'a')), KeyOf(std::u16string(300, u'a')));
  EXPECT_NE(KeyOf(std::u16string(254, u'a')), KeyOf(std::u16string(255, u'a')));
}

TEST(TextKey, PositionRunsIntoTheUpperByte) {
  EXPECT_TRUE(KeyOf(std::u16string(98, u'a') + u"-").ends_with("01 01 01 01 81 8F 06 82 00"));
}

// Each row sorts before the next one, in one direction as in the other.
TEST(TextKey, SortsAsTextDoes) {
  const std::u16string rows[] = {u"",        u"_",     u"1",    u"a",    u"coop",
                                 u"co-op",   u"coops", u"lodz", u"łódź", u"lodzie",
                                 u"strasse", u"z",     u"Ж",    u"漢"};
  for (std::size_t i = 0; i + 1 < std::size(rows); ++i) {
    EXPECT_TRUE(CompareText(rows[i], rows[i + 1]) < 0) << i;
    std::vector<std::byte> low, high;
    AppendTextKey(rows[i + 1], false, low);
    AppendTextKey(rows[i], false, high);
    EXPECT_LT(low, high) << i;
  }
}

TEST(CompareText, KnowsNoCaseButAccents) {
  EXPECT_TRUE(EqualText(u"Łódź", u"ŁÓDŹ"));
  EXPECT_TRUE(EqualText(u"straße", u"STRASSE "));
  EXPECT_FALSE(EqualText(u"lodz", u"łódź"));
  EXPECT_FALSE(EqualText(u"coop", u"co-op"));
  const std::u16string longText(400, u'a');
  EXPECT_FALSE(EqualText(longText, longText + u"b")) << "whole texts are compared";
}

// Separators never occur among the inline bytes, whatever the unit.
TEST(TextKey, EveryUnitHasASoundKey) {
  for (unsigned unit = 0; unit <= 0xFFFF; ++unit) {
    std::vector<std::byte> inlineBytes;
    AppendTextKeyStart(std::u16string(1, static_cast<char16_t>(unit)), inlineBytes);
    ASSERT_LE(inlineBytes.size(), 6u) << unit;
    for (const std::byte byte : inlineBytes) {
      ASSERT_GT(std::to_integer<unsigned>(byte), 1u) << std::hex << unit;
      ASSERT_LT(std::to_integer<unsigned>(byte), 0xFFu + (inlineBytes.size() > 1))
          << std::hex << unit;
    }
  }
}

}  // namespace
}  // namespace zimbrat::jet
