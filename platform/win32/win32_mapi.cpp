#include "win32_mapi.h"

#include <mapi.h>

#include <string>

#include "wide_text.h"

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

void Check(ULONG code) {
  if (code == SUCCESS_SUCCESS) return;
  throw RunTimeError(kErrMapi + static_cast<std::int32_t>(code), u"MAPI",
                     u"Program pocztowy odmówił (" + DecimalText(code) + u")");
}

// From the system's own folder, so that nothing that lies beside a database takes its place.
LibraryHandle Load() {
  const std::u16string folder = GrownText([](wchar_t* text, DWORD size) { return ::GetSystemDirectoryW(text, size); });
  return LibraryHandle(::LoadLibraryW(Lend(folder + u"\\mapi32.dll")));
}

}  // namespace

template <class Function>
Function* Win32Mapi::Find(const char* name) {
  if (!library_.IsOpen()) library_ = Load();
  auto* found = library_.IsOpen() ? reinterpret_cast<Function*>(
                                        reinterpret_cast<void*>(::GetProcAddress(library_.Get(), name)))
                                  : nullptr;
  if (found == nullptr) throw OwnError(kErrCannotCreateObject);
  return found;
}

MailSession Win32Mapi::SignOn() {
  LHANDLE session = lhSessionNull;
  Check(Find<MAPILOGON>("MAPILogon")(reinterpret_cast<ULONG_PTR>(owner_()), nullptr, nullptr, MAPI_LOGON_UI, 0,
                                     &session));
  return session;
}

void Win32Mapi::Send(MailSession session, const MailMessage& message) {
  if (session == kNoMailSession) return Mapi::Send(session, message);
  std::string name = AnsiText(message.recipient), address = "SMTP:" + name;
  std::string subject = AnsiText(message.subject), text = AnsiText(message.text);
  MapiRecipDesc recipient = {};
  recipient.ulRecipClass = MAPI_TO;
  recipient.lpszName = name.data();
  recipient.lpszAddress = address.data();
  MapiMessage mail = {};
  mail.lpszSubject = subject.data();
  mail.lpszNoteText = text.data();
  mail.nRecipCount = 1;
  mail.lpRecips = &recipient;
  Check(Find<MAPISENDMAIL>("MAPISendMail")(session, reinterpret_cast<ULONG_PTR>(owner_()), &mail, MAPI_DIALOG, 0));
}

void Win32Mapi::SignOff(MailSession session) {
  if (session == kNoMailSession) return Mapi::SignOff(session);
  Check(Find<MAPILOGOFF>("MAPILogoff")(session, reinterpret_cast<ULONG_PTR>(owner_()), 0, 0));
}

}  // namespace zimbrat::platform
