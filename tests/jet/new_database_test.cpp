// An empty database against what the real engine lays out, byte by byte where the figures are known.
#include <gtest/gtest.h>

#include <array>

#include "jet/catalog/database_file.h"
#include "jet/catalog/properties.h"
#include "jet/file/rc4.h"
#include "jet/table/definition.h"
#include "platform/error_numbers.h"
#include "platform/system.h"
#include "tests/support/error_of.h"
#include "tests/support/fake_clock.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::jet {

using tests::ErrorOf;

namespace {

std::vector<std::byte> BytesOf(std::string_view hex) {
  std::vector<std::byte> bytes;
  std::string digits;
  for (const char c : hex) {
    if (c == ' ') continue;
    digits += c;
    if (digits.size() < 2) continue;
    bytes.push_back(static_cast<std::byte>(std::stoi(digits, nullptr, 16)));
    digits.clear();
  }
  return bytes;
}

class NewDatabase : public ::testing::Test {
 protected:
  tests::TempFolder folder_;
  tests::FakeClock clock_;
  platform::System system_ = platform::MakeSystem(0, nullptr);

  std::string Make(bool encode, std::u16string_view password = {}) {
    auto file = CreateDatabaseFile(*system_.files, clock_, folder_.PathOf(u"a.mdb"), encode, password, {});
    file->Pages().Flush();
    file.reset();
    return folder_.Read(u"a.mdb");
  }
  static ConstBytes Page(const std::string& file, std::size_t page) {
    return std::as_bytes(std::span(file)).subspan(page * kPageSize, kPageSize);
  }
};

}  // namespace

TEST(HeaderMask, IsTheConstantOneOfTheFormat) {
  std::array<std::byte, 32> mask{};
  Rc4(0x6B39DAC7, mask);
  const auto expected = BytesOf(
      "B5 6F 03 62 61 08 C2 55 EB A9 67 72 43 3F 00 9C 7A 9F 90 FF 80 9A 31 C5 79 BA ED 30 BC DF CC 9D");
  EXPECT_TRUE(std::equal(mask.begin(), mask.end(), expected.begin(), expected.end()));
}

TEST_F(NewDatabase, HasSixteenPagesWithTheKnownFigures) {
  const std::string file = Make(false);
  ASSERT_EQ(file.size(), 16u * kPageSize);
  struct Case {
    std::size_t page;
    std::uint16_t start;  // bytes 0 and 1
    std::uint16_t free;
    std::uint32_t owner;
  };
  const Case cases[] = {
      {1, 0x0101, 0x0F64, 1},  {6, 0x0101, 0x0759, 0},  {7, 0x0104, 0x0D6F, 2},  {8, 0x0104, 0x0DD8, 2},
      {9, 0x0104, 0x0D90, 3},  {10, 0x0104, 0x0E20, 4}, {11, 0x0104, 0x0E20, 5}, {13, 0x0104, 0x0E20, 5},
      {14, 0x0101, 0x0D48, 2}, {15, 0x0101, 0x0EA2, 3},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(Get16(Page(file, c.page), 0), c.start) << c.page;
    EXPECT_EQ(Get16(Page(file, c.page), 2), c.free) << c.page;
    EXPECT_EQ(Get32(Page(file, c.page), 4), c.owner) << c.page;
  }
  for (const auto& [page, length, free] : {std::array{2, 1050, 3038}, std::array{3, 335, 3753},
                                           std::array{4, 525, 3563}, std::array{5, 813, 3275}}) {
    EXPECT_EQ(Get32(Page(file, static_cast<std::size_t>(page)), 8), static_cast<std::uint32_t>(length));
    EXPECT_EQ(Get16(Page(file, static_cast<std::size_t>(page)), 2), static_cast<std::uint16_t>(free));
  }
  const auto key = BytesOf("7F 8F 00 00 00 7F 4F 4A 6D 4A 4C 4A 6B 51 6B 01 00 00 00 0E 01");  // "Databases"
  const ConstBytes entries = Page(file, 7).subspan(kOffsetEntries, key.size());
  EXPECT_TRUE(std::equal(key.begin(), key.end(), entries.begin()));
  const auto row = BytesOf("06 EA 2E 00");  // owner of the container Tables, then the variable offsets
  const ConstBytes stored = Page(file, 14).subspan(kPageSize - 75, 75);
  EXPECT_TRUE(std::equal(row.begin(), row.end(), stored.begin() + 44));
}

TEST_F(NewDatabase, EncodedPagesDecodeToThePlainOnes) {
  const std::string plain = Make(false);
  system_.files->Delete(folder_.PathOf(u"a.mdb"));
  const std::string encoded = Make(true);
  ASSERT_EQ(plain.size(), encoded.size());
  const FileHeader header = DecodeHeader(Page(encoded, 0), u"");
  ASSERT_NE(header.encodingKey, 0u);
  for (std::size_t page = 1; page < plain.size() / kPageSize; ++page) {
    std::array<std::byte, kPageSize> decoded;
    std::ranges::copy(Page(encoded, page), decoded.begin());
    EXPECT_FALSE(std::ranges::equal(decoded, Page(plain, page))) << page;
    Rc4(header.encodingKey ^ static_cast<std::uint32_t>(page), decoded);
    EXPECT_TRUE(std::ranges::equal(decoded, Page(plain, page))) << page;
  }
}

TEST_F(NewDatabase, PasswordsStandInTheHeaderUnderTheDayMask) {
  EXPECT_EQ(DecodePassword(Page(Make(false), 0)).View(), u"");
  system_.files->Delete(folder_.PathOf(u"a.mdb"));
  EXPECT_EQ(DecodePassword(Page(Make(false, u"Hasło żółte"), 0)).View(), u"Hasło żółte");
}

TEST(Properties, TheBlobIsAsTheFormatHasIt) {
  PropertyBlob blob;
  blob.PutText({}, u"Description", kTypeText, u"t");
  blob.PutBoolean(u"Nr", u"Required", true);
  blob.PutText(u"Nr", u"DefaultValue", kTypeMemo, u"0");
  const auto expected = BytesOf(
      "4D 52 32 00 4A 00 00 00 80 00 16 00 44 00 65 00 73 00 63 00 72 00 69 00 70 00 74 00 69 00 6F 00 6E 00"
      "10 00 52 00 65 00 71 00 75 00 69 00 72 00 65 00 64 00"
      "18 00 44 00 65 00 66 00 61 00 75 00 6C 00 74 00 56 00 61 00 6C 00 75 00 65 00"
      "16 00 00 00 00 00 06 00 00 00 00 00 0A 00 01 0A 00 00 02 00 74 00"
      "23 00 00 00 01 00 0A 00 00 00 04 00 4E 00 72 00 09 00 01 01 01 00 01 00 01 0A 00 01 0C 02 00 02 00 30 00");
  EXPECT_EQ(blob.Encode(), expected);
  EXPECT_TRUE(PropertyBlob::Decode(expected) == blob);
  EXPECT_TRUE(blob.FindBoolean(u"nr", u"required"));
  // Cut anywhere it is an error, never a crash.
  for (std::size_t size = 1; size < expected.size(); ++size) {
    ErrorOf([&] { PropertyBlob::Decode(ConstBytes(expected).first(size)); });
  }
}

}  // namespace zimbrat::jet
