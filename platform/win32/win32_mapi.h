// Simple MAPI: whatever mail program the system has. Texts go in the system's ANSI code page.
#pragma once

#include <windows.h>

#include <functional>

#include "handles.h"
#include "platform/mapi.h"

namespace zimbrat::platform {

class Win32Mapi : public Mapi {
 public:
  // The window over which the mail program shows its own.
  explicit Win32Mapi(std::function<HWND()> owner) : owner_(std::move(owner)) {}

  MailSession SignOn() override;
  void Send(MailSession session, const MailMessage& message) override;
  void SignOff(MailSession session) override;

 private:
  template <class Function>
  Function* Find(const char* name);

  std::function<HWND()> owner_;
  LibraryHandle library_;
};

}  // namespace zimbrat::platform
