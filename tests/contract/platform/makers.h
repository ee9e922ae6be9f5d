// The implementations that this system has, for the suites that run each of them.
#pragma once

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/files.h"
#include "platform/profile.h"
#include "platform/registry.h"

namespace zimbrat::tests {

struct ProfileMaker {
  std::string name;
  // Whether it answers as Windows does also where the system's own functions under Wine do not.
  bool isPortable = false;
  std::function<std::unique_ptr<platform::Profile>(platform::Files&)> make;
};
std::vector<ProfileMaker> ProfileMakers();

// An empty registry, gone with the object.
class RegistryBench {
 public:
  virtual ~RegistryBench() = default;
  virtual platform::Registry& Get() = 0;
};
struct RegistryMaker {
  std::string name;
  std::function<std::unique_ptr<RegistryBench>()> make;
};
std::vector<RegistryMaker> RegistryMakers();

// For what a failing test prints.
inline void PrintTo(const ProfileMaker& maker, std::ostream* out) { *out << maker.name; }
inline void PrintTo(const RegistryMaker& maker, std::ostream* out) { *out << maker.name; }

// For the names of parameterized tests.
template <class Maker>
std::string MakerName(const testing::TestParamInfo<Maker>& info) {
  return info.param.name;
}

// The portable ones, which every system has.
ProfileMaker PortableProfileMaker();
RegistryMaker PortableRegistryMaker();

}  // namespace zimbrat::tests
