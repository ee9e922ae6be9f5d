#include <gtest/gtest.h>

#include "generator/ModGeneruj.h"
#include "platform/error_numbers.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

// Items of the last line, joined with '|', after the lines were decoded one after another.
template <class Line, class Decode>
std::string Decoded(std::initializer_list<const char16_t*> lines, Decode decode,
                    std::initializer_list<std::u16string Line::*> items) {
  Line line;
  for (const char16_t* text : lines) decode(text, line);
  std::string joined;
  for (const auto item : items) joined += "|" + Utf8(line.*item);
  return joined.substr(1);
}

std::string Field(std::initializer_list<const char16_t*> lines) {
  using Line = generator::FieldLine;
  return Decoded<Line>(lines, generator::DecodeFieldLine,
                       {&Line::name, &Line::type, &Line::size, &Line::defaultValue, &Line::required,
                        &Line::allowZeroLength, &Line::attributes, &Line::validationText});
}

std::string Index(std::initializer_list<const char16_t*> lines) {
  using Line = generator::IndexLine;
  return Decoded<Line>(
      lines, generator::DecodeIndexLine,
      {&Line::name, &Line::primary, &Line::reserved, &Line::unique, &Line::required});
}

std::string Relation(const char16_t* text) {
  using Line = generator::RelationLine;
  bool decoded = false;
  const std::string items = Decoded<Line>(
      {text}, [&](auto value, Line& line) { decoded = generator::DecodeRelationLine(value, line); },
      {&Line::table, &Line::foreignTable, &Line::attributes});
  return (decoded ? "" : "!") + items;
}

std::string RelationField(std::initializer_list<const char16_t*> lines) {
  using Line = generator::RelationFieldLine;
  return Decoded<Line>(lines, generator::DecodeRelationFieldLine,
                       {&Line::name, &Line::foreignName});
}

TEST(FieldLine, TakesSevenItemsAndTheRest) {
  EXPECT_EQ(Field({u"Numer,10,30,\"A\",True,False,2,Numer, jak na dokumencie"}),
            "Numer|10|30|\"A\"|True|False|2|Numer, jak na dokumencie");
  EXPECT_EQ(Field({u" Nazwa , 10 ,,,,,,"}), " Nazwa | 10 ||||||");
}

TEST(FieldLine, InheritsTheItemsThatLackACommaFromTheLineBefore) {
  // Six commas: attributes stay, the text behind the sixth becomes the validation text.
  EXPECT_EQ(Field({u"A,10,30,,True,False,17,x", u"B,10,20,,False,True,2"}),
            "B|10|20||False|True|17|2");
  EXPECT_EQ(Field({u"A,10,30,0,True,False,17,x", u"sam tekst"}),
            "A|10|30|0|True|False|17|sam tekst");
  EXPECT_EQ(Field({u"bez przecinka"}), "|||||||bez przecinka");
  EXPECT_EQ(Field({u"A,10,30,,True,False,17,x", u""}), "A|10|30||True|False|17|");
}

TEST(IndexLine, CutsRequiredToTheLengthOfUnique) {
  EXPECT_EQ(Index({u"IX,True,0,True,True"}), "IX|True|0|True|True");
  EXPECT_EQ(Index({u"IX,True,0,True,False"}), "IX|True|0|True|Fals");
  EXPECT_EQ(Index({u"IX,False,0,0,1,5"}), "IX|False|0|0|1");
  EXPECT_EQ(Index({u"IX,False,0,,1"}), "IX|False|0||");
}

TEST(IndexLine, KeepsItemsOfTheLineBefore) {
  EXPECT_EQ(Index({u"A,True,0,True,True", u"B,False,0,1"}), "B|False|0|True|1");
  EXPECT_EQ(Index({u"A,True,0,True,True", u"Bez"}), "A|True|0|True|Bez");
}

TEST(IndexFieldLine, NeedsItsComma) {
  std::u16string name = u"poprzednie";
  EXPECT_FALSE(generator::DecodeIndexFieldLine(u"Nazwa", name));
  EXPECT_EQ(Utf8(name), "poprzednie");
  EXPECT_TRUE(generator::DecodeIndexFieldLine(u"Nazwa,", name));
  EXPECT_EQ(Utf8(name), "Nazwa");
}

TEST(RelationLine, NeedsTwoCommasAndCutsItsAttributes) {
  EXPECT_EQ(Relation(u"Kontrahent,Faktura,4352"), "Kontrahent|Faktura|4352");
  EXPECT_EQ(Relation(u"Kontrahent,F,4096"), "Kontrahent|F|4");
  EXPECT_EQ(Relation(u"Kontrahent,Faktura"), "!Kontrahent||");
  EXPECT_EQ(Relation(u"Kontrahent"), "!||");
  EXPECT_EQ(Relation(u",,5"), "||");
}

TEST(RelationFieldLine, NeverFails) {
  EXPECT_EQ(RelationField({u"Id,IdObcy,x"}), "Id|IdObcy,x");
  EXPECT_EQ(RelationField({u"Id,IdObcy", u"Sam"}), "Id|Sam");
}

TEST(FileList, LeavesOutALastItemOfOneCharacter) {
  const std::pair<const char16_t*, std::vector<std::u16string>> rows[] = {
      {u"A.stb,B.stb", {u"A.stb", u"B.stb"}},
      {u"A.stb,B", {u"A.stb"}},
      {u"  A.stb,", {u"A.stb"}},
      {u"A,B.stb", {u"A", u"B.stb"}},
      {u"A.stb,,B.stb", {u"A.stb", u"", u"B.stb"}},
      {u"A", {}},
      {u"   ", {}},
      {u"A.stb, B.stb", {u"A.stb", u" B.stb"}},
  };
  for (const auto& [list, files] : rows) {
    EXPECT_EQ(generator::SplitFileList(list, u','), files) << Utf8(list);
  }
}

TEST(Header, IsReadIntoSixteenBits) {
  Bench bench;
  const auto header = generator::ReadStructureHeader(
      bench.profile, bench.WriteStructure(u"a.stb",
                                          "[HEADER]\nProgram=Kadry i płace\nSymbol=KADRYPLACE\n"
                                          "VerMajor=1\nVerMinor=12\nTabCount=x\n"));
  EXPECT_EQ(Utf8(header.symbol), "KADRYPLAC");
  EXPECT_EQ(Utf8(header.program), "Kadry i płace");
  EXPECT_EQ(header.verMajor * 10 + header.verMinor, 22);
  EXPECT_EQ(header.tabCount, 0);
  const auto broken = bench.WriteStructure(u"b.stb", "[HEADER]\nVerMajor=40000\n");
  try {
    generator::ReadStructureHeader(bench.profile, broken);
    FAIL() << "40000 does not fit into 16 bits";
  } catch (const platform::RunTimeError& error) {
    EXPECT_EQ(error.Number(), platform::kErrOverflow);
  }
}

}  // namespace
}  // namespace zimbrat::tests
