// The embedded database engine: genuine Jet 4 files behind the DAO object model.
#pragma once

#include <functional>
#include <memory>

#include "platform/clock.h"
#include "platform/dao.h"
#include "platform/files.h"

namespace zimbrat::jet {

// `files` and `clock` must outlive the engine and everything got from it. `pulse` is given from time to time
// during long work; it may be empty.
std::shared_ptr<dao::Engine> MakeEngine(platform::Files& files, platform::Clock& clock,
                                        std::function<void()> pulse);

}  // namespace zimbrat::jet
