// Which database engine the program works with, and who verifies a finished copy.
#pragma once

#include "platform/clock.h"
#include "platform/dao.h"
#include "platform/files.h"

#include <functional>
#include <memory>
#include <string_view>

namespace zimbrat::engines {

// The embedded engine. `pulse` is called during long work. Both interfaces must outlive it.
std::shared_ptr<dao::Engine> MakeEngine(platform::Files& files, platform::Clock& clock,
                                        std::function<void()> pulse);

// Throws a RunTimeError that names the first fault of the file which `original` has not; of all its
// faults when `original` is empty. The original is read only when the file has faults.
void VerifyDatabase(platform::Files& files, std::u16string_view path, std::u16string_view original,
                    std::function<void()> pulse);

}  // namespace zimbrat::engines
