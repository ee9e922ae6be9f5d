// A mail program's library: writes what it is told into the file that ZIMBRAT_MAPI_RECORD names, and refuses the
// call that ZIMBRAT_MAPI_REFUSES names.
#include <windows.h>

#include <mapi.h>

#include <fstream>
#include <string>

namespace {

std::string Variable(const char* name) {
  char text[1024] = {};
  ::GetEnvironmentVariableA(name, text, sizeof text);
  return text;
}

ULONG Record(const std::string& call, const std::string& what) {
  if (Variable("ZIMBRAT_MAPI_REFUSES") == call) return MAPI_E_FAILURE;
  std::ofstream(Variable("ZIMBRAT_MAPI_RECORD"), std::ios::binary | std::ios::app) << call << what << "\n";
  return SUCCESS_SUCCESS;
}

std::string TextOf(const char* text) { return text == nullptr ? "<null>" : text; }

constexpr LHANDLE kSession = 77;

}  // namespace

extern "C" {

__declspec(dllexport) ULONG WINAPI MAPILogon(ULONG_PTR window, LPSTR, LPSTR, FLAGS flags, ULONG, LPLHANDLE session) {
  const ULONG code = Record("MAPILogon", " " + std::to_string(flags) + (window == 0 ? " no window" : ""));
  if (code == SUCCESS_SUCCESS) *session = kSession;
  return code;
}

__declspec(dllexport) ULONG WINAPI MAPISendMail(LHANDLE session, ULONG_PTR window, lpMapiMessage mail, FLAGS flags, ULONG) {
  std::string text = " " + std::to_string(session) + " " + std::to_string(flags) + (window == 0 ? " no window" : "");
  for (ULONG i = 0; i < mail->nRecipCount; ++i) {
    const MapiRecipDesc& to = mail->lpRecips[i];
    text += " to " + std::to_string(to.ulRecipClass) + " " + TextOf(to.lpszName) + " " + TextOf(to.lpszAddress);
  }
  return Record("MAPISendMail", text + ": " + TextOf(mail->lpszSubject) + "\n" + TextOf(mail->lpszNoteText));
}

__declspec(dllexport) ULONG WINAPI MAPILogoff(LHANDLE session, ULONG_PTR, FLAGS, ULONG) {
  return Record("MAPILogoff", " " + std::to_string(session));
}
}
