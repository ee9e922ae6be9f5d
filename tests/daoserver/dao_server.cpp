#include "dao_server.h"

#include <gtest/gtest.h>

#include "platform/win32/handles.h"
#include "call.h"
#include "tests/wizard/registry_change.h"

namespace zimbrat::tests {
namespace {

class Factory : public IClassFactory {
 public:
  explicit Factory(std::shared_ptr<ServerState> state) : state_(std::move(state)) {}
  virtual ~Factory() = default;

  STDMETHODIMP QueryInterface(REFIID type, void** object) override {
    const bool isKnown = ::IsEqualIID(type, IID_IUnknown) || ::IsEqualIID(type, IID_IClassFactory);
    *object = isKnown ? this : nullptr;
    return isKnown ? S_OK : E_NOINTERFACE;
  }
  // Lives as long as the offer.
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP CreateInstance(IUnknown* outer, REFIID type, void** object) override {
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    return std::make_shared<Object>(state_, EngineClass(), state_, nullptr, false)->QueryInterface(type, object);
  }
  STDMETHODIMP LockServer(BOOL) override { return S_OK; }

 private:
  std::shared_ptr<ServerState> state_;
};

class Apartment {
 public:
  Apartment() { EXPECT_HRESULT_SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
  ~Apartment() { ::CoUninitialize(); }
  Apartment(const Apartment&) = delete;
  Apartment& operator=(const Apartment&) = delete;
};

// The registry is one for all processes.
class Turn {
 public:
  Turn() : mutex_(::CreateMutexW(nullptr, FALSE, L"ZimbratDaoServer")) {
    const DWORD waited = ::WaitForSingleObject(mutex_.Get(), INFINITE);
    EXPECT_TRUE(waited == WAIT_OBJECT_0 || waited == WAIT_ABANDONED);
  }
  ~Turn() { ::ReleaseMutex(mutex_.Get()); }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

 private:
  platform::ObjectHandle mutex_;
};

CLSID MakeClassId() {
  CLSID made = {};
  EXPECT_HRESULT_SUCCEEDED(::CoCreateGuid(&made));
  return made;
}

std::wstring TextOf(const CLSID& id) {
  std::wstring text(39, L'\0');
  ::StringFromGUID2(id, text.data(), static_cast<int>(text.size()));
  text.pop_back();
  return text;
}

}  // namespace

class DaoServer::Offer {
 public:
  Offer(const std::shared_ptr<ServerState>& state, const std::wstring& programId)
      : factory_(state), key_(L"SOFTWARE\\Classes\\" + programId + L"\\CLSID", L"", TextOf(class_)) {
    EXPECT_HRESULT_SUCCEEDED(::CoRegisterClassObject(class_, &factory_, CLSCTX_INPROC_SERVER,
                                                     REGCLS_MULTIPLEUSE, &cookie_));
  }
  ~Offer() { ::CoRevokeClassObject(cookie_); }
  Offer(const Offer&) = delete;
  Offer& operator=(const Offer&) = delete;

 private:
  Apartment apartment_;
  Turn turn_;
  CLSID class_ = MakeClassId();
  Factory factory_;
  RegistryChange key_;
  DWORD cookie_ = 0;
};

DaoServer::DaoServer(std::shared_ptr<dao::Engine> engine, std::wstring programId)
    : state_(std::make_shared<ServerState>()),
      log(state_->log),
      keepsLog(state_->keepsLog),
      isTerse(state_->isTerse),
      offer_(std::make_unique<Offer>(state_, programId)) {
  state_->engine = std::move(engine);
  state_->makesNewerFiles = programId != L"DAO.DBEngine.36";
}

DaoServer::~DaoServer() = default;

long DaoServer::Objects() const { return state_->objects; }
int DaoServer::Calls() const { return state_->calls; }
void DaoServer::FailAt(int call, std::int32_t number) {
  state_->callsToFailure = call;
  state_->failure = number;
}

}  // namespace zimbrat::tests
