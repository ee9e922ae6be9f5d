// The engine's errors: DAO's numbers with Polish texts. The object whose member was called is filled in
// by the engine's face; below it the source stays empty.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/dao_errors.h"
#include "platform/error_numbers.h"
#include "platform/run_time_error.h"

namespace zimbrat::jet {

[[noreturn]] void Raise(std::int32_t number, std::u16string_view a = {}, std::u16string_view b = {});

// Damage in a file is first noticed here, whatever it is: error 3049, `what` tells place and fault.
[[noreturn]] void RaiseDamaged(std::u16string_view what);
[[noreturn]] void RaiseDamagedPage(std::uint32_t page, std::u16string_view what);

// Error 3027 for what would change an index of texts that another sort order than General orders.
[[noreturn]] void RaiseForeignOrder();

}  // namespace zimbrat::jet
