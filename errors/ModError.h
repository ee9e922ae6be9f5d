// The central reaction to an unexpected run-time error: it is shown in dlgError, with an explanation, and
// logged where the user wants that.
#pragma once

#include "errors/dlgError.h"
#include "suite/program_state.h"
#include "platform/run_time_error.h"

#include <functional>
#include <string_view>
#include <vector>

namespace zimbrat::errors {

// The window over which the dialog is shown.
enum class DialogOwner { None, FirstForm, ActiveForm };

// None while nothing but the dialog is loaded; the first form when that is the wizard's.
DialogOwner OwnerAmong(const std::vector<const platform::Form*>& forms);

// Shows the dialog modally and returns when it is unloaded.
using ShowDialog = std::function<void(dlgError& dialog, DialogOwner owner)>;

// Reports an error of `routineName`, that is the routine's own name. `extra` is not used. What fails
// while the dialog is being filled is raised.
void ErrorReport(suite::ProgramState& state, const platform::RunTimeError& error,
                 std::u16string_view routineName, std::u16string_view extra, const Outside& outside,
                 const ShowDialog& show);

// The same where nobody may be shown anything: the dialog is unloaded as it was preset, so that the error is
// logged when the user has chosen so before. Raises nothing.
void ErrorReportUnseen(suite::ProgramState& state, const platform::RunTimeError& error,
                       std::u16string_view routineName) noexcept;

}  // namespace zimbrat::errors
