// The explanations: sections, missing things, sizes.
#include <gtest/gtest.h>

#include "errors/error_texts.h"
#include "suite/product.h"
#include "tests/errors/error_bench.h"

namespace zimbrat::tests {
namespace {

std::string Lookup(ErrorBench& bench, std::u16string_view source, std::int32_t number) {
  return Utf8(errors::ErrorTextLookup(bench.state, errors::SourceLabel(source), number, source));
}

std::string Advice() {
  return "Jeżeli nie jesteś w stanie określić przyczyny błędu wyślij informację o okolicznościach jego "
         "występowania na adres: " +
         Utf8(suite::SupportAddress()) + "\r\n Do poczty załącz plik dziennika błędów: Error.log.";
}

TEST(SourceLabel, NamesTheSection) {
  const std::pair<const char16_t*, const char*> rows[] = {
      {u"DAO.Database", "DAO"}, {u"DAO", "DAO"},          {u"DAOx", "DAO"},   {u"dao", "dao"},
      {u"DA", "DA"},            {u"Zimbrat", "Program"},  {u"zimbrat", "zimbrat"},
      {u"", ""},                {u"Program", "Program"},  {u"Microsoft Outlook", "Microsoft Outlook"}};
  for (const auto& [source, label] : rows) EXPECT_EQ(Utf8(errors::SourceLabel(source)), label) << Utf8(source);
}

TEST(ErrorTexts, AreFoundInTheSectionOfTheSource) {
  ErrorBench bench;
  bench.WriteTexts(
      "[DAO]\n3022=Zduplikowany klucz; źle\n-5 = ujemny  \n7=\"w cudzysłowie  \"\n8=\n"
      "[Program]\n7=Brak pamięci\n[Microsoft Outlook]\n287=Odmowa\n[zażółć]\n1=polska sekcja\n");
  const std::tuple<const char16_t*, std::int32_t, std::string> rows[] = {
      {u"DAO.Recordset", 3022, "Zduplikowany klucz; źle"},
      {u"DAO.Recordset", -5, "ujemny"},
      {u"DAO", 7, "w cudzysłowie  "},
      {u"Zimbrat", 7, "Brak pamięci"},
      {u"Microsoft Outlook", 287, "Odmowa"},
      {u"zażółć", 1, "polska sekcja"},
      {u"DAO", 8, "Błąd dostępu lub przetwarzania danych. " + Advice()},
      {u"DAO.Field", 99, "Błąd dostępu lub przetwarzania danych. " + Advice()},
      {u"Zimbrat", 99, "Błąd programu. " + Advice()},
      {u"dao", 3022, "Zduplikowany klucz; źle"},  // the profile does not tell letters' case apart
      {u"dao", 99, "Błąd programu. " + Advice()},
      {u"", 7, "Błąd programu. " + Advice()}};
  for (const auto& [source, number, text] : rows) {
    EXPECT_EQ(Lookup(bench, source, number), text) << Utf8(source) << " " << number;
  }
}

TEST(ErrorTexts, AreCutAtTheBuffersEnd) {
  ErrorBench bench;
  const std::string whole(3999, 'x');
  bench.WriteTexts("[DAO]\n1=" + whole + "\n2=" + whole + "yz\n3=" + whole.substr(1) + "\n");
  EXPECT_EQ(Lookup(bench, u"DAO", 1), whole);
  EXPECT_EQ(Lookup(bench, u"DAO", 2), whole);
  EXPECT_EQ(Lookup(bench, u"DAO", 3), whole.substr(1));
}

TEST(ErrorTexts, TellWhereTheFileIsMissed) {
  ErrorBench bench;
  const auto missing = [](const std::u16string& file) {
    return "Brak dostępu do pliku opisów błędów: " + Utf8(file) +
           " - sprawdź czy we wskazanym folderze znaduje się plik Errormsg.txt.";
  };
  EXPECT_EQ(Lookup(bench, u"DAO", 7), missing(bench.bench.PathOf(u"Errormsg.txt")));
  bench.bench.folder.Write(u"Errormsg.txt/x", "a folder of that name");
  EXPECT_EQ(Lookup(bench, u"DAO", 7), missing(bench.bench.PathOf(u"Errormsg.txt")));
  bench.state.errorFolder = bench.bench.PathOf(u"inny");
  EXPECT_EQ(Lookup(bench, u"DAO", 7), missing(bench.bench.PathOf(u"inny/Errormsg.txt")));
  bench.bench.folder.Write(u"inny/Errormsg.txt", "[DAO]\r\n7=tutaj\r\n");
  EXPECT_EQ(Lookup(bench, u"DAO", 7), "tutaj");
}

TEST(ErrorTexts, SurviveFilesThatAreNone) {
  ErrorBench bench;
  for (const std::string& bytes : {std::string(), std::string("\xFF\xFE[\0D\0", 6), std::string("[DAO"),
                                   std::string("[DAO]\n7"), std::string(100'000, '\0'), std::string("[DAO]\n7=\0x", 10)}) {
    bench.bench.folder.Write(u"Errormsg.txt", bytes);
    EXPECT_EQ(Lookup(bench, u"DAO", 7), "Błąd dostępu lub przetwarzania danych. " + Advice()) << bytes.size();
  }
}

}  // namespace
}  // namespace zimbrat::tests
