// Takes the place of Outlook in the registry of this machine and in this process, and writes down what it is
// told, one line each: "Name=text", "Name(arguments)".
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <vector>

#include "tests/wizard/registry_change.h"

namespace zimbrat::tests {

class OutlookStandIn {
 public:
  OutlookStandIn();
  ~OutlookStandIn();
  OutlookStandIn(const OutlookStandIn&) = delete;
  OutlookStandIn& operator=(const OutlookStandIn&) = delete;

  std::vector<std::string> done;
  std::string refused;  // the member that raises error 287
  // References that were not given back.
  long References() const { return references_; }

 private:
  class Object : public IDispatch {
   public:
    Object(OutlookStandIn& told, std::vector<std::wstring> members) : told_(told), members_(std::move(members)) {}
    STDMETHODIMP QueryInterface(REFIID type, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++told_.references_); }
    STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--told_.references_); }
    STDMETHODIMP GetTypeInfoCount(UINT* count) override;
    STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID, DISPID* ids) override;
    STDMETHODIMP Invoke(DISPID id, REFIID, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                        EXCEPINFO* said, UINT*) override;

   private:
    OutlookStandIn& told_;
    std::vector<std::wstring> members_;
  };

  class Factory : public IClassFactory {
   public:
    explicit Factory(Object& made) : made_(made) {}
    STDMETHODIMP QueryInterface(REFIID type, void** object) override;
    STDMETHODIMP_(ULONG) AddRef() override { return 2; }
    STDMETHODIMP_(ULONG) Release() override { return 1; }
    STDMETHODIMP CreateInstance(IUnknown*, REFIID type, void** object) override {
      return made_.QueryInterface(type, object);
    }
    STDMETHODIMP LockServer(BOOL) override { return S_OK; }

   private:
    Object& made_;
  };

  long references_ = 0;
  Object attachments_{*this, {L"Add"}};
  Object item_{*this, {L"Subject", L"To", L"Body", L"HTMLBody", L"Attachments", L"Display"}};
  Object application_{*this, {L"CreateItem"}};
  Factory factory_{application_};
  RegistryChange key_;
  DWORD cookie_ = 0;
};

}  // namespace zimbrat::tests
