#include "win32_hold.h"

#include <utility>

#include "handles.h"
#include "platform/text.h"
#include "wide_text.h"
#include "win32_errors.h"

namespace zimbrat::platform {
namespace {

class Win32Hold : public Hold {
 public:
  explicit Win32Hold(ObjectHandle mutex) : mutex_(std::move(mutex)) {}

 private:
  ObjectHandle mutex_;
};

// Names of objects may not hold `\` and end at 260 units. Of a longer path the end is kept, and the whole
// counts through a sum (FNV-1a) in front.
std::u16string MutexName(std::u16string_view path) {
  constexpr std::size_t kMostUnits = 200;
  std::u16string key = ReplaceAll(UpperCase(path), u"\\", u"/");
  std::uint64_t sum = 14695981039346656037u;
  for (const char16_t unit : key) sum = (sum ^ unit) * 1099511628211u;
  if (key.size() > kMostUnits) key.erase(0, key.size() - kMostUnits);
  return u"Global\\Zimbrat " + DecimalText(static_cast<long long>(sum >> 1)) + u" " + key;
}

}  // namespace

std::unique_ptr<Hold> TryWin32Hold(std::u16string_view path) {
  // That the mutex exists is the hold. Owning it would not do: a thread may own one twice.
  const std::u16string name = MutexName(path);
  ObjectHandle mutex(::CreateMutexW(nullptr, FALSE, Lend(name)));
  const DWORD code = ::GetLastError();
  if (!mutex.IsOpen()) {
    if (code == ERROR_ACCESS_DENIED) return nullptr;  // another user's
    throw SystemError(code, u"blokada", path);
  }
  if (code == ERROR_ALREADY_EXISTS) return nullptr;
  return std::make_unique<Win32Hold>(std::move(mutex));
}

}  // namespace zimbrat::platform
