// What Windows reads in the file of Zimbrat.exe before it starts it: version, manifest, icon.
#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>

#include <string>
#include <vector>

#include "suite/product.h"
#include "platform/text.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::tests {
namespace {

std::wstring ProgramPath() {
  const std::u16string name = platform::Utf16FromUtf8(ZIMBRAT_PROGRAM);
  wchar_t full[MAX_PATH] = {};
  ::GetFullPathNameW(platform::Lend(name), MAX_PATH, full, nullptr);
  return full;
}

TEST(ProgramFile, TellsItsNameAndVersionInPolish) {
  const DWORD size = ::GetFileVersionInfoSizeW(ProgramPath().c_str(), nullptr);
  ASSERT_GT(size, 0u);
  std::vector<char> block(size);
  ASSERT_TRUE(::GetFileVersionInfoW(ProgramPath().c_str(), 0, size, block.data()));
  void* data = nullptr;
  UINT length = 0;
  ASSERT_TRUE(::VerQueryValueW(block.data(), L"\\VarFileInfo\\Translation", &data, &length));
  // The language in the lower half, the code page in the upper.
  EXPECT_EQ(*static_cast<const DWORD*>(data), MAKELONG(0x0415, 1200));
  const std::string version = platform::Utf8FromUtf16(suite::ProductVersion());
  const std::pair<const wchar_t*, std::string> rows[] = {
      {L"ProductName", "Zimbrat baz danych pakietu Kalmix"},
      {L"Comments", "Zakłada, rozszerza, kopiuje, sprawdza i naprawia bazy danych pakietu Kalmix"},
      {L"OriginalFilename", "Zimbrat.exe"},
      {L"FileVersion", version},
      {L"ProductVersion", version}};
  for (const auto& [name, expected] : rows) {
    const std::wstring path = std::wstring(L"\\StringFileInfo\\041504B0\\") + name;
    ASSERT_TRUE(::VerQueryValueW(block.data(), path.c_str(), &data, &length)) << expected;
    EXPECT_EQ(platform::Utf8FromUtf16(static_cast<const char16_t*>(data)), expected);
  }
  ASSERT_TRUE(::VerQueryValueW(block.data(), L"\\", &data, &length));
  const auto& fixed = *static_cast<const VS_FIXEDFILEINFO*>(data);
  EXPECT_EQ(std::to_string(HIWORD(fixed.dwFileVersionMS)) + "." +
                std::to_string(LOWORD(fixed.dwFileVersionMS)) + "." +
                std::to_string(HIWORD(fixed.dwFileVersionLS)),
            version);
}

// A manifest with a fault would keep the program from starting at all.
TEST(ProgramFile, HasAManifestThatIsSoundAndKeepsTheCodePage) {
  ACTCTXW source = {};
  source.cbSize = sizeof source;
  source.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID;
  const std::wstring path = ProgramPath();
  source.lpSource = path.c_str();
  source.lpResourceName = MAKEINTRESOURCEW(1);
  const HANDLE context = ::CreateActCtxW(&source);
  ASSERT_NE(context, INVALID_HANDLE_VALUE) << ::GetLastError();
  wchar_t value[64] = {};
  const auto read = [&](const wchar_t* space, const wchar_t* name) {
    value[0] = L'\0';
    ::QueryActCtxSettingsW(0, context, space, name, value, 64, nullptr);
    return platform::Utf8FromUtf16(platform::FromWide(value));
  };
  EXPECT_EQ(read(L"http://schemas.microsoft.com/SMI/2005/WindowsSettings", L"dpiAware"), "true/pm");
  EXPECT_EQ(read(L"http://schemas.microsoft.com/SMI/2016/WindowsSettings", L"dpiAwareness"),
            "PerMonitorV2, PerMonitor");
  // UTF-8 there would change what the profile and registry functions read.
  EXPECT_EQ(read(L"http://schemas.microsoft.com/SMI/2019/WindowsSettings", L"activeCodePage"), "");
  ::ReleaseActCtx(context);
}

TEST(ProgramFile, ShowsItsIcon) {
  EXPECT_EQ(::ExtractIconExW(ProgramPath().c_str(), -1, nullptr, nullptr, 0), 1u);
}

}  // namespace
}  // namespace zimbrat::tests
