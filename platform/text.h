// Text of the core is UTF-16 in std::u16string, one element a unit, as DAO and the file format count.
// Here stand all conversions to and from bytes, and the few text rules that the product shares.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zimbrat::platform {

// The separator of file paths: `\` on Windows, `/` elsewhere. Registry paths always use `\`.
extern const char16_t kPathSeparator;

// Broken UTF-8 and unpaired surrogates become U+FFFD.
std::u16string Utf16FromUtf8(std::string_view utf8);
std::string Utf8FromUtf16(std::u16string_view text);

// Windows-1250 as Windows has it: all 256 bytes round-trip (81, 83, 88, 90 and 98 are U+0081 ...).
std::u16string Utf16FromAnsi1250(std::string_view bytes);
char16_t Utf16FromAnsi1250(char byte);
// A character without a byte in Windows-1250 becomes '?'.
std::string Ansi1250FromUtf16(std::u16string_view text);

// Case folding by a fixed table (Latin, Greek and Cyrillic letters), whatever the process's locale.
char16_t UpperCase(char16_t unit);
std::u16string UpperCase(std::u16string_view text);
char16_t LowerCase(char16_t unit);
std::u16string LowerCase(std::u16string_view text);
bool EqualIgnoringCase(std::u16string_view a, std::u16string_view b);

// Blanks (U+0020 alone) off both ends, as Visual Basic's Trim.
std::u16string_view TrimBlanks(std::u16string_view text);
// Every occurrence, compared exactly; an empty `find` changes nothing.
std::u16string ReplaceAll(std::u16string_view text, std::u16string_view find,
                          std::u16string_view with);
bool Contains(std::u16string_view text, std::u16string_view part);

// The decimal text of a number, as Visual Basic's CStr for whole numbers.
std::u16string DecimalText(long long number);

// Overwrites the text with zeros in a way that the compiler does not remove, then empties it.
void Wipe(std::u16string& text);
void Wipe(std::string& text);

}  // namespace zimbrat::platform
