// What makes DBEngine objects of one server. Lives while somebody holds it, as every object of COM.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <memory>

namespace zimbrat::tests {

struct ServerState;

class Factory : public IClassFactory, public std::enable_shared_from_this<Factory> {
 public:
  explicit Factory(std::shared_ptr<ServerState> state) : state_(std::move(state)) {}
  virtual ~Factory() = default;
  Factory(const Factory&) = delete;
  Factory& operator=(const Factory&) = delete;

  STDMETHODIMP QueryInterface(REFIID type, void** object) override;
  STDMETHODIMP_(ULONG) AddRef() override;
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID type, void** object) override;
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  std::shared_ptr<ServerState> state_;
  ULONG references_ = 0;
  std::shared_ptr<Factory> self_;  // while there are references
};

}  // namespace zimbrat::tests
