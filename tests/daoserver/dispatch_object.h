// Any object of the server: IDispatch over one of dao.h's objects, by a table of its class's members.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <memory>
#include <span>
#include <string>

#include "server_state.h"

namespace zimbrat::tests {

class Call;
using Work = void (*)(Call&);

enum class Kind { Method, Property };

struct Member {
  const wchar_t* name;
  Kind kind;
  int required;  // arguments that must be there
  int optional;  // and may be there
  Work work;
  Work put = nullptr;  // none: the property is read only
};

struct Class {
  const wchar_t* name;
  const char16_t* source;  // of its errors
  // The first one is the default member, DISPID 0, unless there is none.
  std::span<const Member> members;
  bool hasDefault = true;
};

// Lives while there are references to it.
class Object : public IDispatch, public std::enable_shared_from_this<Object> {
 public:
  // `home`: the database that the object belongs to, if any; a child of it keeps its file.
  Object(std::shared_ptr<ServerState> state, const Class& of, std::shared_ptr<void> it,
         OpenDatabasePtr home, bool isChild);
  virtual ~Object();
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  // The object behind a pointer of a caller; null when it is none of ours.
  static std::shared_ptr<Object> Behind(IUnknown* pointer);

  const std::shared_ptr<ServerState>& State() const { return state_; }
  const Class& Of() const { return class_; }
  const std::shared_ptr<void>& It() const { return it_; }
  const OpenDatabasePtr& Home() const { return home_; }

  STDMETHODIMP QueryInterface(REFIID type, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP GetTypeInfoCount(UINT* count) override;
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID type, LPOLESTR* names, UINT count, LCID, DISPID* ids) override;
  STDMETHODIMP Invoke(DISPID id, REFIID type, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* said, UINT*) override;

 private:
  const Member* Find(DISPID id) const;
  void Log(const Member& member, bool isPut);
  void FailWhereTold();
  HRESULT Tell(const platform::RunTimeError& error, EXCEPINFO* said);

  std::shared_ptr<ServerState> state_;
  const Class& class_;
  std::shared_ptr<void> it_;
  OpenDatabasePtr home_;
  bool isChild_;
  ULONG references_ = 0;
  std::shared_ptr<Object> self_;  // while there are references
};

}  // namespace zimbrat::tests
