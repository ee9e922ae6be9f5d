// The start of the program: the command line, the interactive run and the automatic one, the message
// routine.
#pragma once

#include "app/mdiMenu.h"
#include "suite/program_state.h"
#include "platform/host.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::app {

// Under kWizardKey: how the last automatic run went.
inline constexpr std::u16string_view kStatusValue = u"Aktualizacja status";

// Loads the form. Without a command line `show` shows it. With one whose first token is not empty the
// form checks the database of the second token by itself, never shown, and the outcome goes into the
// registry. With an empty first token nothing happens.
void Main(suite::ProgramState& state, mdiMenu& form, std::u16string_view commandLine,
          const std::function<void()>& show);

// Whether the form has come to its last page and found the structure right.
bool HasFoundAllRight(const mdiMenu& form);

// Splits at "|" and tabs: an empty token between two adjacent separators, none for a single one at an
// end. Element 0 of `Args` is not used. `most` tokens are kept; less than 1 means 10. False for an empty
// command line, with `most` empty tokens.
bool ParseCommandLine(std::u16string_view commandLine, std::vector<std::u16string>& Args, int& most);

// Shows the message through `windows` and returns the button pressed; in an automatic run shows nothing
// and returns 0.
int ShowMessage(const suite::ProgramState& state, platform::Host& windows, std::u16string_view prompt,
                int buttons, std::u16string_view title);

}  // namespace zimbrat::app
