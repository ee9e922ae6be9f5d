// COM on a thread that may have it already.
#pragma once

#include <windows.h>

#include <objbase.h>

namespace zimbrat::platform {

class Apartment {
 public:
  Apartment() : result_(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) {}
  ~Apartment() {
    if (SUCCEEDED(result_)) ::CoUninitialize();
  }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;

 private:
  HRESULT result_;
};

}  // namespace zimbrat::platform
