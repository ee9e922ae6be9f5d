#include "owners_rights.h"

#include <sddl.h>

#include <cstddef>
#include <string>
#include <vector>

namespace zimbrat::platform {
namespace {

// The user of the process as "S-1-..."; empty when the system does not tell.
std::wstring UserSid() {
  ObjectHandle token;
  if (!::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, token.Receive())) return {};
  DWORD size = 0;
  ::GetTokenInformation(token.Get(), TokenUser, nullptr, 0, &size);
  std::vector<std::byte> room(size);
  if (size == 0 || !::GetTokenInformation(token.Get(), TokenUser, room.data(), size, &size)) return {};
  LocalHandle text;
  const auto* user = reinterpret_cast<const TOKEN_USER*>(room.data());
  if (!::ConvertSidToStringSidW(user->User.Sid, reinterpret_cast<LPWSTR*>(text.Receive()))) return {};
  return static_cast<const wchar_t*>(text.Get());
}

}  // namespace

OwnersRights::OwnersRights() {
  const std::wstring user = UserSid();
  if (user.empty()) return;
  // Protected from what the folder hands down; all rights for the two.
  const std::wstring rights = L"D:P(A;;FA;;;" + user + L")(A;;FA;;;SY)";
  if (::ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1,
                                                             descriptor_.Receive(), nullptr)) {
    attributes_.lpSecurityDescriptor = descriptor_.Get();
  }
}

}  // namespace zimbrat::platform
