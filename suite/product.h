// What the product is called, which version it is and who helps with it: configured in the CMakeLists.txt
// at the top, and nowhere else.
#pragma once

#include <string_view>

namespace zimbrat::suite {

std::u16string_view ProductTitle();
// Of message boxes.
std::u16string_view MessageTitle();
// "major.minor.revision".
std::u16string_view ProductVersion();
// The e-mail address that error reports go to.
std::u16string_view SupportAddress();

}  // namespace zimbrat::suite
