// Each task from its beginning to its end through COM: what it leaves is sound and equal to what it leaves with the
// embedded engine.
#include <gtest/gtest.h>

#include "tests/adversity/stage.h"
#include "tests/product/database_picture.h"
#include "tests/through_com/offered_engine.h"

namespace zimbrat::tests {
namespace {

class TasksThroughCom : public testing::TestWithParam<Task> {};

TEST_P(TasksThroughCom, LeaveWhatTheEmbeddedEngineLeaves) {
  const OfferedEngine offered;
  {
    Stage embedded(GetParam(), Ground::Disk);
    Stage installed(GetParam(), Ground::Disk, engines::Wish::Installed);
    for (Stage* stage : {&embedded, &installed}) {
      EXPECT_TRUE(stage->Run()) << stage->text;
      stage->CheckOutcome(true, "undisturbed");
      EXPECT_EQ(stage->Leftovers(), "");
    }
    EXPECT_EQ(Utf8(installed.bench.state.EngineText()).find("wbudowany"), std::string::npos);
    const auto picture = PictureOf(embedded.bench.state.Engine(), embedded.PathOf(kTarget));
    for (Stage* looks : {&embedded, &installed}) {
      for (Stage* has : {&embedded, &installed}) {
        EXPECT_EQ(PictureOf(looks->bench.state.Engine(), has->PathOf(kTarget)), picture);
      }
    }
  }
  EXPECT_EQ(offered.server.Objects(), 0);
  EXPECT_EQ(offered.server.Unclosed(), 0);
}

INSTANTIATE_TEST_SUITE_P(Each, TasksThroughCom, testing::ValuesIn(AllTasks()),
                         [](const auto& row) { return NameOfTask(row.param); });

}  // namespace
}  // namespace zimbrat::tests
