#include "win32_profile.h"

#include <windows.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "wide_text.h"

namespace zimbrat::platform {
namespace {

std::optional<std::string> FindAnsiPath(const std::u16string& path) {
  const int units = static_cast<int>(path.size());
  std::string bytes(path.size() * 4 + 1, '\0');
  BOOL isLossy = FALSE;
  const int length = ::WideCharToMultiByte(CP_ACP, WC_NO_BEST_FIT_CHARS, Lend(path), units, bytes.data(),
                                           static_cast<int>(bytes.size()), nullptr, &isLossy);
  if (isLossy || (length == 0 && units != 0)) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(length));
  return bytes;
}

std::wstring WideOf(std::string_view bytes) {
  std::wstring text(bytes.size(), L'\0');
  const int length = ::MultiByteToWideChar(CP_ACP, 0, bytes.data(), static_cast<int>(bytes.size()),
                                           text.data(), static_cast<int>(text.size()));
  text.resize(static_cast<std::size_t>(length));
  return text;
}

// The first `count` units of an answer and the NULs behind them.
void PutBytes(const std::vector<wchar_t>& answer, std::span<char> buffer) {
  ::WideCharToMultiByte(CP_ACP, 0, answer.data(), static_cast<int>(answer.size()), buffer.data(),
                        static_cast<int>(buffer.size()), nullptr, nullptr);
}

bool IsCut(std::u16string_view path) { return path.find(u'\0') != std::u16string_view::npos; }

}  // namespace

std::uint32_t Win32Profile::Section(std::string_view section, std::span<char> buffer,
                                    std::u16string_view path) {
  if (!buffer.empty()) buffer[0] = '\0';
  if (buffer.size() < 2 || IsCut(path)) return 0;  // below two the system writes past the end
  const std::u16string name(path);
  const auto size = static_cast<DWORD>(buffer.size());
  if (const auto ansi = FindAnsiPath(name)) {
    return ::GetPrivateProfileSectionA(std::string(section).c_str(), buffer.data(), size,
                                       ansi->c_str());
  }
  std::vector<wchar_t> answer(buffer.size());
  const DWORD length =
      ::GetPrivateProfileSectionW(WideOf(section).c_str(), answer.data(), size, Lend(name));
  PutBytes(answer, buffer);
  return length;
}

std::uint32_t Win32Profile::String(std::string_view section, std::string_view key,
                                   std::string_view defaultText, std::span<char> buffer,
                                   std::u16string_view path) {
  if (buffer.empty() || IsCut(path)) return 0;
  const std::u16string name(path);
  const auto size = static_cast<DWORD>(buffer.size());
  if (const auto ansi = FindAnsiPath(name)) {
    return ::GetPrivateProfileStringA(std::string(section).c_str(), std::string(key).c_str(),
                                      std::string(defaultText).c_str(), buffer.data(), size,
                                      ansi->c_str());
  }
  std::vector<wchar_t> answer(buffer.size());
  const DWORD length =
      ::GetPrivateProfileStringW(WideOf(section).c_str(), WideOf(key).c_str(),
                                 WideOf(defaultText).c_str(), answer.data(), size, Lend(name));
  PutBytes(answer, buffer);
  return length;
}

std::int32_t Win32Profile::Int(std::string_view section, std::string_view key,
                               std::int32_t defaultValue, std::u16string_view path) {
  if (IsCut(path)) return defaultValue;
  const std::u16string name(path);
  if (const auto ansi = FindAnsiPath(name)) {
    return static_cast<std::int32_t>(::GetPrivateProfileIntA(
        std::string(section).c_str(), std::string(key).c_str(), defaultValue, ansi->c_str()));
  }
  return static_cast<std::int32_t>(::GetPrivateProfileIntW(
      WideOf(section).c_str(), WideOf(key).c_str(), defaultValue, Lend(name)));
}

bool Win32Profile::Write(std::string_view section, const std::string* key, const std::string* value,
                         std::u16string_view path) {
  if (IsCut(path)) return false;
  const std::u16string name(path);
  if (const auto ansi = FindAnsiPath(name)) {
    return ::WritePrivateProfileStringA(std::string(section).c_str(), key ? key->c_str() : nullptr,
                                        value ? value->c_str() : nullptr, ansi->c_str()) != FALSE;
  }
  const std::wstring wideKey = WideOf(key ? *key : std::string());
  const std::wstring wideValue = WideOf(value ? *value : std::string());
  return ::WritePrivateProfileStringW(WideOf(section).c_str(), key ? wideKey.c_str() : nullptr,
                                      value ? wideValue.c_str() : nullptr, Lend(name)) != FALSE;
}

}  // namespace zimbrat::platform
