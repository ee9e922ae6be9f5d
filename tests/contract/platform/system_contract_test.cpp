// Clock, environment and console of this system.
#include <gtest/gtest.h>

#include <set>

#include "platform/system.h"

namespace zimbrat::platform {
namespace {

TEST(SystemContract, ClockGoesOn) {
  const System system = MakeSystem(0, nullptr);
  EXPECT_GT(system.clock->Now(), 45000);  // 2023
  const std::uint64_t first = system.clock->Milliseconds();
  EXPECT_GE(system.clock->Milliseconds(), first);
  std::set<std::uint32_t> numbers;
  for (int i = 0; i < 8; ++i) numbers.insert(system.clock->Random());
  EXPECT_GT(numbers.size(), 4u);
  EXPECT_FALSE(system.clock->ShortDate().empty());
  EXPECT_FALSE(system.clock->ShortTime().empty());
}

TEST(SystemContract, EnvironmentKnowsVariablesAndFolders) {
  const System system = MakeSystem(0, nullptr);
  EXPECT_FALSE(system.environment->Variable(u"PATH").empty());
  EXPECT_TRUE(system.environment->Variable(u"ZIMBRAT_NO_SUCH_NAME").empty());
  EXPECT_TRUE(system.files->IsFolder(system.environment->ProgramFolder()));
  EXPECT_TRUE(system.files->IsFolder(system.environment->CurrentFolder()));
}

}  // namespace
}  // namespace zimbrat::platform
