// Numbers of the resources of the executables with windows.
#pragma once

namespace zimbrat::app {

inline constexpr int kIconId = 1;

}  // namespace zimbrat::app
