#include "makers.h"

namespace zimbrat::tests {

std::vector<ProfileMaker> ProfileMakers() { return {PortableProfileMaker()}; }
std::vector<RegistryMaker> RegistryMakers() { return {PortableRegistryMaker()}; }

}  // namespace zimbrat::tests
