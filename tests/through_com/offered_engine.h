// DAO as this process finds it installed: the automation server over the embedded engine, with a clock that
// stands still, so that its databases can be compared with others.
#pragma once

#include "jet/engine.h"
#include "platform/system.h"
#include "tests/daoserver/dao_server.h"
#include "tests/support/fake_clock.h"

namespace zimbrat::tests {

class OfferedEngine {
 private:
  platform::System system_ = platform::MakeSystem(0, nullptr);
  FakeClock clock_;

 public:
  DaoServer server{jet::MakeEngine(*system_.files, clock_, {})};
};

}  // namespace zimbrat::tests
