#include "platform/secret.h"

#include <gtest/gtest.h>

#include <utility>

namespace zimbrat::platform {
namespace {

TEST(Secret, KeepsItsTextThroughEveryChange) {
  Secret secret(u"ab");
  secret.Append(u"cd");
  secret.Append(secret);
  EXPECT_EQ(secret.View(), u"abcdabcd");
  for (int i = 0; i < 4; ++i) secret.Append(secret);  // beyond any first buffer
  EXPECT_EQ(secret.View().size(), 128u);
  EXPECT_TRUE(secret.View().ends_with(u"abcdabcd"));
  secret = secret.View().substr(2, 3);
  EXPECT_EQ(secret.View(), u"cda");

  Secret moved(std::move(secret));
  EXPECT_TRUE(secret.IsEmpty());
  secret.Append(u"x");
  EXPECT_EQ(secret.View(), u"x");
  secret = std::move(moved);
  EXPECT_EQ(secret.View(), u"cda");
  EXPECT_TRUE(moved.IsEmpty());
  secret.Clear();
  EXPECT_EQ(secret.View(), u"");
}

TEST(Secret, ComesFromUtf8) {
  EXPECT_EQ(SecretFromUtf8("Zażółć").View(), u"Zażółć");
  EXPECT_EQ(SecretFromUtf8("a\xFF").View(), u"a\xFFFD");
  EXPECT_TRUE(SecretFromUtf8("").IsEmpty());
}

}  // namespace
}  // namespace zimbrat::platform
