#include "win32_attributes.h"

#include <windows.h>

#include <aclapi.h>

#include <string>

#include "handles.h"
#include "wide_text.h"
#include "win32_errors.h"

namespace zimbrat::platform {
namespace {

bool HasNoSecurity(DWORD code) {  // FAT, many network drives
  return code == ERROR_NOT_SUPPORTED || code == ERROR_INVALID_FUNCTION ||
         code == ERROR_CALL_NOT_IMPLEMENTED;
}

// A list that was inherited is inherited again in the new place, one that was cut off stays cut off. Owner
// and group can be given only by the privileged, so their refusal does not count.
void CopySecurity(std::u16string_view from, std::u16string_view to) {
  std::u16string source = SystemPath(from), target = SystemPath(to);
  PSID owner = nullptr, group = nullptr;
  PACL list = nullptr;
  LocalHandle descriptor;
  DWORD code = ::GetNamedSecurityInfoW(
      LendRoom(source), SE_FILE_OBJECT,
      OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION | DACL_SECURITY_INFORMATION, &owner,
      &group, &list, nullptr, descriptor.Receive());
  if (code != ERROR_SUCCESS && !HasNoSecurity(code)) throw SystemError(code, u"uprawnienia", from);
  if (code != ERROR_SUCCESS) return;
  SECURITY_DESCRIPTOR_CONTROL control = 0;
  DWORD revision = 0;
  ::GetSecurityDescriptorControl(descriptor.Get(), &control, &revision);
  const SECURITY_INFORMATION inheritance = (control & SE_DACL_PROTECTED) != 0
                                               ? PROTECTED_DACL_SECURITY_INFORMATION
                                               : UNPROTECTED_DACL_SECURITY_INFORMATION;
  ::SetNamedSecurityInfoW(LendRoom(target), SE_FILE_OBJECT,
                          OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION, owner, group,
                          nullptr, nullptr);
  code = ::SetNamedSecurityInfoW(LendRoom(target), SE_FILE_OBJECT,
                                 DACL_SECURITY_INFORMATION | inheritance, nullptr, nullptr, list,
                                 nullptr);
  if (code != ERROR_SUCCESS && !HasNoSecurity(code)) throw SystemError(code, u"uprawnienia", to);
}

void CopyCreationTime(const FILETIME& created, std::u16string_view to) {
  const FileHandle target(::CreateFileW(Lend(SystemPath(to)), FILE_WRITE_ATTRIBUTES,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                        nullptr, OPEN_EXISTING, 0, nullptr));
  if (!target.IsOpen() || !::SetFileTime(target.Get(), &created, nullptr, nullptr)) {
    throw SystemError(::GetLastError(), u"atrybuty", to);
  }
}

}  // namespace

void CopyWin32Attributes(std::u16string_view from, std::u16string_view to) {
  constexpr DWORD kSettable = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                              FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
  WIN32_FILE_ATTRIBUTE_DATA found;
  if (!::GetFileAttributesExW(Lend(SystemPath(from)), GetFileExInfoStandard, &found)) {
    throw SystemError(::GetLastError(), u"atrybuty", from);
  }
  CopySecurity(from, to);
  CopyCreationTime(found.ftCreationTime, to);
  // Last: a file that is read-only takes no more changes.
  const DWORD attributes = found.dwFileAttributes & kSettable;
  if (!::SetFileAttributesW(Lend(SystemPath(to)), attributes == 0 ? FILE_ATTRIBUTE_NORMAL : attributes)) {
    throw SystemError(::GetLastError(), u"atrybuty", to);
  }
}

}  // namespace zimbrat::platform
