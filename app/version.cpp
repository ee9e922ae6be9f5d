#include "app/version.h"

namespace zimbrat::app {

std::u16string_view ProgramVersion() {
  return ZIMBRAT_VERSION;
}

}  // namespace zimbrat::app
