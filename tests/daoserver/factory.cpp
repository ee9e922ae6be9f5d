#include "factory.h"

#include "call.h"

namespace zimbrat::tests {

STDMETHODIMP Factory::QueryInterface(REFIID type, void** object) {
  const bool isKnown = ::IsEqualIID(type, IID_IUnknown) || ::IsEqualIID(type, IID_IClassFactory);
  *object = isKnown ? this : nullptr;
  if (!isKnown) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) Factory::AddRef() {
  if (references_ == 0) self_ = shared_from_this();
  return ++references_;
}

STDMETHODIMP_(ULONG) Factory::Release() {
  const ULONG left = --references_;
  const std::shared_ptr<Factory> last = left == 0 ? std::move(self_) : nullptr;
  return left;
}

STDMETHODIMP Factory::CreateInstance(IUnknown* outer, REFIID type, void** object) {
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  return std::make_shared<Object>(state_, EngineClass(), state_, nullptr, false)->QueryInterface(type, object);
}

}  // namespace zimbrat::tests
