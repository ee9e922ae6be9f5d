// That a task gives back all texts and values of automation, and all objects.
#include <gtest/gtest.h>

#include "tests/adversity/stage.h"
#include "tests/daoserver/allocation_count.h"
#include "tests/product/database_picture.h"
#include "tests/through_com/offered_engine.h"

namespace zimbrat::tests {
namespace {

class Leaks : public testing::TestWithParam<Task> {};

TEST_P(Leaks, AreNotThere) {
  const OfferedEngine offered;
  const AllocationCount count;
  {
    Stage stage(GetParam(), Ground::Disk, engines::Wish::Installed);
    EXPECT_TRUE(stage.Run()) << stage.text;
    EXPECT_FALSE(PictureOf(stage.bench.state.Engine(), stage.PathOf(kTarget)).empty());
  }
  EXPECT_GT(count.Seen(), 1000);
  EXPECT_EQ(count.Live(), 0);
  EXPECT_EQ(offered.server.Objects(), 0);
}

INSTANTIATE_TEST_SUITE_P(OfATask, Leaks, testing::ValuesIn(AllTasks()),
                         [](const auto& row) { return NameOfTask(row.param); });

}  // namespace
}  // namespace zimbrat::tests
