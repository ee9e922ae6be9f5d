// Handles of Windows that release themselves. Nothing else in the program releases one.
//
// One template, one line of traits a kind: the type, the value that means "none", the releasing call.
#pragma once

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>
#include <shtypes.h>

#include <utility>

#include "platform/secret.h"

namespace zimbrat::platform {

template <class Traits>
class UniqueHandle {
 public:
  using Type = typename Traits::Type;

  UniqueHandle() = default;
  explicit UniqueHandle(Type handle) : handle_(handle) {}
  UniqueHandle(UniqueHandle&& other) noexcept : handle_(std::exchange(other.handle_, Traits::None())) {}
  UniqueHandle& operator=(UniqueHandle&& other) noexcept {
    std::swap(handle_, other.handle_);
    return *this;
  }
  ~UniqueHandle() {
    if (IsOpen()) Traits::Close(handle_);
  }

  Type Get() const { return handle_; }
  bool IsOpen() const { return handle_ != Traits::None(); }
  // Gives the handle away.
  Type Detach() { return std::exchange(handle_, Traits::None()); }
  // For calls that put the handle somewhere; only while there is none.
  Type* Receive() { return &handle_; }

 private:
  Type handle_ = Traits::None();
};

struct FileTraits {
  using Type = HANDLE;
  static Type None() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { ::CloseHandle(handle); }
};
struct FindTraits {
  using Type = HANDLE;
  static Type None() { return INVALID_HANDLE_VALUE; }
  static void Close(Type handle) { ::FindClose(handle); }
};
struct ObjectTraits {  // tokens, processes and the like
  using Type = HANDLE;
  static Type None() { return nullptr; }
  static void Close(Type handle) { ::CloseHandle(handle); }
};
struct KeyTraits {
  using Type = HKEY;
  static Type None() { return nullptr; }
  static void Close(Type handle) { ::RegCloseKey(handle); }
};
struct LocalTraits {  // memory that the system allocated for its caller
  using Type = HLOCAL;
  static Type None() { return nullptr; }
  static void Close(Type handle) { ::LocalFree(handle); }
};

struct ItemListTraits {  // what names an item of the shell
  using Type = PIDLIST_ABSOLUTE;
  static Type None() { return nullptr; }
  static void Close(Type list) { ::CoTaskMemFree(list); }
};

struct BstrTraits {
  using Type = BSTR;
  static Type None() { return nullptr; }
  static void Close(Type text) { ::SysFreeString(text); }
};
struct LibraryTraits {
  using Type = HMODULE;
  static Type None() { return nullptr; }
  static void Close(Type library) { ::FreeLibrary(library); }
};

struct WindowTraits {
  using Type = HWND;
  static Type None() { return nullptr; }
  static void Close(Type window) { ::DestroyWindow(window); }
};
struct FontTraits {
  using Type = HFONT;
  static Type None() { return nullptr; }
  static void Close(Type font) { ::DeleteObject(font); }
};
struct IconTraits {
  using Type = HICON;
  static Type None() { return nullptr; }
  static void Close(Type icon) { ::DestroyIcon(icon); }
};
template <class Interface>
struct ComTraits {
  using Type = Interface*;
  static Type None() { return nullptr; }
  static void Close(Type object) { object->Release(); }
};

using FileHandle = UniqueHandle<FileTraits>;
using FindHandle = UniqueHandle<FindTraits>;
using ObjectHandle = UniqueHandle<ObjectTraits>;
using KeyHandle = UniqueHandle<KeyTraits>;
using LocalHandle = UniqueHandle<LocalTraits>;
using WindowHandle = UniqueHandle<WindowTraits>;
using FontHandle = UniqueHandle<FontTraits>;
using IconHandle = UniqueHandle<IconTraits>;
template <class Interface>
using ComReference = UniqueHandle<ComTraits<Interface>>;
using ItemList = UniqueHandle<ItemListTraits>;
using Bstr = UniqueHandle<BstrTraits>;
using LibraryHandle = UniqueHandle<LibraryTraits>;

// A value of automation with what it owns. A text in it may be a password: it is overwritten at the end.
class Variant {
 public:
  Variant() = default;
  Variant(Variant&& other) noexcept : value_(std::exchange(other.value_, VARIANT{})) {}
  Variant& operator=(Variant&& other) noexcept {
    std::swap(value_, other.value_);
    return *this;
  }
  ~Variant() {
    if (value_.vt == VT_BSTR && value_.bstrVal != nullptr) {
      WipeMemory(value_.bstrVal, ::SysStringByteLen(value_.bstrVal));
    }
    ::VariantClear(&value_);
  }

  VARIANT* Get() { return &value_; }
  // For calls that only read it, though they do not say so.
  VARIANT* Get() const { return const_cast<VARIANT*>(&value_); }

 private:
  VARIANT value_ = {};
};

}  // namespace zimbrat::platform
