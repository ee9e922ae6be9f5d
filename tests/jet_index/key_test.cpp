#include "jet/index/key.h"

#include <limits>

#include "gtest/gtest.h"
#include "hex.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::jet {
namespace {

using dao::Value;

dao::Binary Binary(std::string_view hex) {
  return BytesFromHex(hex);
}

dao::Guid Guid(std::string_view hex) {
  dao::Guid guid;
  const std::vector<std::byte> bytes = BytesFromHex(hex);
  std::copy(bytes.begin(), bytes.end(), guid.bytes.begin());
  return guid;
}

template <class T>
T FromBytes(std::string_view hex) {
  return GetLittle<T>(BytesFromHex(hex), 0);
}

struct KeyCase {
  const char* name;
  std::int16_t type;
  bool ascending;
  Value value;
  const char* key;
};

const KeyCase kCases[] = {
    {"null", dao::dbLong, true, dao::Null{}, "00"},
    {"null descending", dao::dbText, false, dao::Null{}, "FF"},
    {"true", dao::dbBoolean, true, true, "7F 00"},
    {"false descending", dao::dbBoolean, false, false, "80 00"},
    {"byte", dao::dbByte, true, std::uint8_t{13}, "7F 0D"},
    {"byte descending", dao::dbByte, false, std::uint8_t{199}, "80 38"},
    {"integer", dao::dbInteger, true, std::int16_t{-23}, "7F 7F E9"},
    {"integer descending", dao::dbInteger, false, std::int16_t{13}, "80 7F F2"},
    {"long", dao::dbLong, true, std::int32_t{-5453}, "7F 7F FF EA B3"},
    {"long descending", dao::dbLong, false, std::int32_t{4813}, "80 7F FF ED 32"},
    {"long of an integer", dao::dbLong, true, std::int16_t{13}, "7F 80 00 00 0D"},
    {"currency", dao::dbCurrency, false, dao::Currency{9038090000}, "80 7F FF FF FD E5 49 B0 EF"},
    {"negative single", dao::dbSingle, true, FromBytes<float>("86 8A FE CF"), "7F 30 01 75 79"},
    {"single descending", dao::dbSingle, false, FromBytes<float>("63 BE 93 4D"), "80 32 6C 41 9C"},
    {"date", dao::dbDate, true, dao::Date{FromBytes<double>("74 CF 7F 45 85 95 E3 40")},
     "7F C0 E3 95 85 45 7F CF 74"},
    {"date before 1899", dao::dbDate, true, dao::Date{FromBytes<double>("00 00 00 00 C0 DC E0 C0")},
     "7F 3F 1F 23 3F FF FF FF FF"},
    {"zero", dao::dbDouble, true, 0.0, "7F 80 00 00 00 00 00 00 00"},
    {"negative zero", dao::dbDouble, true, -0.0, "7F 80 00 00 00 00 00 00 00"},
    {"text", dao::dbText, true, std::u16string(u"some"), "7F 6B 64 60 51 01 00"},
    {"memo", dao::dbMemo, true, std::u16string(u"more"), "7F 60 64 69 51 01 00"},
    {"binary", dao::dbBinary, true, Binary("00 00 00 01"), "7F 00 00 00 01 00 00 00 00 04"},
    {"binary of two groups", dao::dbBinary, true, Binary("01 02 03 04 05 06 07 08 09"),
     "7F 01 02 03 04 05 06 07 08 09 09 00 00 00 00 00 00 00 01"},
    {"binary of one full group", dao::dbBinary, false, Binary("01 02 03 04 05 06 07 08"),
     "80 FE FD FC FB FA F9 F8 F7 F7"},
    {"empty binary", dao::dbBinary, true, Binary(""), "7F"},
    {"GUID", dao::dbGUID, true, Guid("8F A2 5F 07 A5 71 32 40 B2 73 54 19 F4 B0 7E 59"),
     "7F 07 5F A2 8F 71 A5 40 32 09 B2 73 54 19 F4 B0 7E 59 08"},
    {"GUID descending", dao::dbGUID, false, Guid("92 10 30 F6 8D 83 60 4F BF 80 D4 82 11 03 01 AD"),
     "80 09 CF EF 6D 7C 72 B0 9F 09 40 7F 2B 7D EE FC FE 52 F7"},
    {"decimal", dao::dbDecimal, true, dao::Decimal{false, {0, 0, 0, 354560}, 2},
     "7F FF 00 00 00 00 00 00 00 00 00 00 00 00 00 05 69 00"},
    {"negative decimal", kColumnTypeDecimal, true, dao::Decimal{true, {0, 0, 0, 354560}, 2},
     "7F 00 FF FF FF FF FF FF FF FF FF FF FF FF FF FA 96 FF"},
    {"decimal descending", dao::dbDecimal, false, dao::Decimal{false, {0, 0, 0, 354560}, 2},
     "80 FF FF FF FF FF FF FF FF FF FF FF FF FF FF FA 96 FF"},
    {"negative decimal descending", dao::dbDecimal, false, dao::Decimal{true, {0, 0, 0, 354560}, 2},
     "80 00 00 00 00 00 00 00 00 00 00 00 00 00 00 05 69 00"},
    {"negative zero decimal", dao::dbDecimal, true, dao::Decimal{true, {}, 0},
     "7F FF 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00"},
};

TEST(Key, IsWhatAccessWrites) {
  for (const KeyCase& c : kCases) {
    const KeyColumn column{c.type, c.ascending};
    EXPECT_EQ(c.key, HexFromBytes(EncodeKey({&column, 1}, {&c.value, 1}))) << c.name;
  }
}

// Every pair of the cases makes a key of two columns that comes apart at the right place, and no
// beginning of it does.
TEST(SplitKey, FindsTheColumns) {
  for (const KeyCase& a : kCases) {
    for (const KeyCase& b : kCases) {
      const KeyColumn columns[] = {{a.type, a.ascending}, {b.type, b.ascending}};
      const Value values[] = {a.value, b.value};
      const std::vector<std::byte> key = EncodeKey(columns, values);
      const auto parts = SplitKey(columns, key);
      ASSERT_TRUE(parts) << a.name << ", " << b.name;
      const std::size_t firstSize = (std::string_view(a.key).size() + 1) / 3;
      const bool maySplitTwice = a.type == dao::dbBinary && firstSize == 1;
      if (!maySplitTwice) {
        EXPECT_EQ(firstSize, parts->parts[0].size) << a.name << ", " << b.name;
      }
      EXPECT_EQ(dao::IsNull(b.value), parts->parts[1].isNull) << a.name << ", " << b.name;
      if (b.type == dao::dbBinary || maySplitTwice) continue;
      EXPECT_FALSE(SplitKey(columns, ConstBytes(key).first(key.size() - 1)))
          << a.name << ", " << b.name;
    }
  }
}

TEST(SplitKey, RefusesWhatIsNoKey) {
  struct {
    std::int16_t type;
    bool ascending;
    const char* key;
  } const cases[] = {
      {dao::dbLong, true, ""},
      {dao::dbLong, true, "7F 80 00 00"},
      {dao::dbLong, true, "7F 80 00 00 00 00"},
      {dao::dbLong, true, "80 80 00 00 00"},
      {dao::dbLong, false, "7F 80 00 00 00"},
      {dao::dbBoolean, true, "7F 01"},
      {dao::dbBoolean, true, "00"},
      {dao::dbText, true, "7F 4A 01"},
      {dao::dbText, false, "80 B5 FE FF"},
      {dao::dbText, false, "80 B5 FE FF 01"},
      {dao::dbBinary, true, "7F 00 00 00 01 00 00 00 00 0A"},
      {dao::dbBinary, true, "7F 00 00 00 01 00 00 00 00 00"},
      {dao::dbGUID, true, "7F"},
  };
  for (const auto& c : cases) {
    const KeyColumn column{c.type, c.ascending};
    EXPECT_FALSE(SplitKey({&column, 1}, BytesFromHex(c.key))) << c.type << ": " << c.key;
  }
}

// Keys order as the values do; descending ones the other way, except the sign of a Decimal.
TEST(Key, OrdersAsTheValuesDo) {
  const std::vector<std::vector<Value>> rising = {
      {std::int16_t{-32768}, std::int16_t{-1}, std::int16_t{0}, std::int16_t{32767}},
      {-std::numeric_limits<double>::max(), -1.5, -1e-300, 0.0, 1e-300, 2.0,
       std::numeric_limits<double>::infinity()},
      {Binary("00"), Binary("00 00"), Binary("00 01"), Binary("00 01 02 03 04 05 06 07"),
       Binary("00 01 02 03 04 05 06 07 00"), Binary("01")},
  };
  const std::int16_t types[] = {dao::dbInteger, dao::dbDouble, dao::dbBinary};
  for (std::size_t k = 0; k < rising.size(); ++k) {
    for (std::size_t i = 0; i + 1 < rising[k].size(); ++i) {
      for (const bool ascending : {true, false}) {
        const KeyColumn column{types[k], ascending};
        const auto low = EncodeKey({&column, 1}, {&rising[k][i], 1});
        const auto high = EncodeKey({&column, 1}, {&rising[k][i + 1], 1});
        EXPECT_EQ(ascending, low < high) << types[k] << ": " << i;
      }
    }
  }
}

std::int32_t ErrorOf(std::int16_t type, const Value& value) {
  try {
    EncodeKey({{type, true}}, {value});
  } catch (const platform::RunTimeError& error) {
    return error.Number();
  }
  return 0;
}

TEST(Key, RefusesWhatCannotBeIndexed) {
  EXPECT_EQ(platform::kErrRecordTooLarge, ErrorOf(dao::dbBinary, dao::Binary(1100)));
  EXPECT_EQ(platform::kErrCannotIndexField, ErrorOf(dao::dbLongBinary, Value(true)));
  EXPECT_EQ(platform::kErrDataConversion, ErrorOf(dao::dbLong, std::u16string(u"1")));
  EXPECT_EQ(platform::kErrDataConversion, ErrorOf(dao::dbByte, std::int32_t{256}));
}

TEST(Key, KnowsWhenAllIsNull) {
  const KeyColumn columns[] = {{dao::dbLong, true}, {dao::dbText, false}};
  EXPECT_TRUE(IsAllNullKey(columns, BytesFromHex("00 FF")));
  EXPECT_FALSE(IsAllNullKey(columns, BytesFromHex("00 80 FE FF 00")));
  EXPECT_FALSE(IsAllNullKey(columns, BytesFromHex("00")));
}

}  // namespace
}  // namespace zimbrat::jet
