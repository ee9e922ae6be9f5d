// What a target's work may come to: success, or an error that says something.
#pragma once

#include <cstdint>
#include <functional>
#include <string_view>

namespace zimbrat::fuzz {

// Whether it went well. A RunTimeError is allowed when it has a number and a text, and is none that stands for
// an exception of the language; all other exceptions pass, and end the process.
bool Attempt(const std::function<void()>& work);
// The same, as the error's number; 0 when it went well.
std::int32_t ErrorOf(const std::function<void()>& work);

// A finding: prints it and ends the process.
[[noreturn]] void Fail(std::string_view what);
void Require(bool holds, std::string_view what);

}  // namespace zimbrat::fuzz
