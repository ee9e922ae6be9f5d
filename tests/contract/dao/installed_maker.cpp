// The engine that is installed in this Windows. Not among the tests that run everywhere: a person starts it.
#include <gtest/gtest.h>

#include <iostream>

#include "platform/text.h"
#include "engine_maker.h"
#include "engine_search.h"

namespace zimbrat::tests {
namespace {

// Which one there is, in words; whether there is one.
bool TellsEngine() {
  platform::System system = platform::MakeSystem(0, nullptr);
  const std::shared_ptr<dao::Engine> engine = FindEngine(system);
  if (engine) {
    std::cout << "Silnik: " << platform::Utf8FromUtf16(engine->Name()) << ' '
              << platform::Utf8FromUtf16(engine->Version()) << '\n';
  } else {
    std::cout << "Nie ma silnika DAO dla programu " << 8 * sizeof(void*) << "-bitowego.\n";
  }
  return engine != nullptr;
}

}  // namespace

EngineUnderTest MakeEngineUnderTest(platform::System& system) {
  return {.engine = FindEngine(system), .isForeign = true};
}

}  // namespace zimbrat::tests

// Exit status 3: there is no engine.
int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  return zimbrat::tests::TellsEngine() ? RUN_ALL_TESTS() : 3;
}
