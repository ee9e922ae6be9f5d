// A mail program that is started for a link: writes its second word, as UTF-8, into the file that the first names.
#include <windows.h>

#include <cstdio>

#include <string>

int wmain(int count, wchar_t** words) {
  if (count != 3) return 2;
  std::string text(4 * 32'768, '\0');
  const int length = ::WideCharToMultiByte(CP_UTF8, 0, words[2], -1, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
  const std::wstring file = words[1], unfinished = file + L".part";
  FILE* const out = ::_wfopen(unfinished.c_str(), L"wb");
  if (out == nullptr) return 1;
  std::fwrite(text.data(), 1, static_cast<std::size_t>(length > 0 ? length - 1 : 0), out);
  std::fclose(out);
  return ::MoveFileW(unfinished.c_str(), file.c_str()) ? 0 : 1;
}
