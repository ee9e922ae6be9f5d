// The one exception type that is thrown on purpose: a run-time error as Visual Basic and DAO know
// it, with a number, the object that raised it and a text for people.
#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>

namespace zimbrat::platform {

// The source of errors that the program raises by itself.
inline constexpr const char16_t* kOwnErrorSource = u"Zimbrat";

class RunTimeError : public std::exception {
 public:
  RunTimeError(std::int32_t number, std::u16string source, std::u16string description);

  std::int32_t Number() const { return number_; }
  const std::u16string& Source() const { return source_; }
  const std::u16string& Description() const { return description_; }

  // The description as UTF-8.
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  std::int32_t number_;
  std::u16string source_;
  std::u16string description_;
  std::string what_;
};

// The Polish text of a Visual Basic error number; empty for numbers that it does not know.
std::u16string_view TextOfError(std::int32_t number);

// An error of the program's own with that text.
RunTimeError OwnError(std::int32_t number);

// What a wrapper that must go on makes of any exception: a RunTimeError keeps its parts, exhausted
// memory is error 7, anything else error 440. Call it inside a catch block only.
RunTimeError CurrentRunTimeError();

}  // namespace zimbrat::platform
