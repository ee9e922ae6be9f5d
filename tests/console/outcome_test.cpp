#include <gtest/gtest.h>

#include "console/outcome.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {
namespace {

TEST(Json, HasOneShapeWhateverTheOutcome) {
  EXPECT_EQ(Utf8(console::JsonText({}, u"lista")),
            "{\"wynik\":\"ok\",\"status\":0,\"polecenie\":\"lista\",\"opis\":\"\",\"baza\":\"\","
            "\"programy\":[],\"bazy\":[]}\n");
  EXPECT_EQ(Utf8(console::JsonText(console::WrongUsage(u"źle"), u"")),
            "{\"wynik\":\"blad\",\"status\":2,\"polecenie\":\"\",\"opis\":\"źle\",\"baza\":\"\","
            "\"programy\":[],\"bazy\":[]}\n");
  console::Outcome outcome;
  outcome.programs.push_back({u"Kadry", u"K", u"1.2", u"k.stb", u"(brak)"});
  outcome.databases.push_back({u"Firma", u"f.mdb"});
  const std::string json = Utf8(console::JsonText(outcome, u"stan"));
  EXPECT_NE(json.find("\"programy\":[{\"nazwa\":\"Kadry\",\"symbol\":\"K\",\"wersja\":\"1.2\","
                      "\"plik\":\"k.stb\",\"stan\":\"(brak)\"}]"),
            std::string::npos);
  EXPECT_NE(json.find("\"bazy\":[{\"nazwa\":\"Firma\",\"plik\":\"f.mdb\"}]"), std::string::npos);
}

TEST(Json, EscapesWhatItMust) {
  console::Outcome outcome;
  const char16_t high = 0xD83D, low = 0xDE00;
  outcome.text = std::u16string(u"a\"b\\c\r\n\t\u0001") + high + low + u"|" + low + u"|" + high;
  EXPECT_NE(Utf8(console::JsonText(outcome, u""))
                .find("\"opis\":\"a\\\"b\\\\c\\r\\n\\t\\u0001😀|\\ude00|\\ud83d\""),
            std::string::npos);
}

}  // namespace
}  // namespace zimbrat::tests
