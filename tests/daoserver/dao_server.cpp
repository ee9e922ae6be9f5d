#include "dao_server.h"

#include <gtest/gtest.h>

#include "platform/win32/handles.h"
#include "factory.h"
#include "server_state.h"
#include "tests/wizard/registry_change.h"

namespace zimbrat::tests {
namespace {

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
      : factory_(std::make_shared<Factory>(state)),
        key_(L"SOFTWARE\\Classes\\" + programId + L"\\CLSID", L"", TextOf(class_)) {
    EXPECT_HRESULT_SUCCEEDED(::CoRegisterClassObject(class_, factory_.get(), CLSCTX_INPROC_SERVER,
                                                     REGCLS_MULTIPLEUSE, &cookie_));
  }
  ~Offer() { ::CoRevokeClassObject(cookie_); }
  Offer(const Offer&) = delete;
  Offer& operator=(const Offer&) = delete;

 private:
  Apartment apartment_;
  Turn turn_;
  CLSID class_ = MakeClassId();
  std::shared_ptr<Factory> factory_;
  RegistryChange key_;
  DWORD cookie_ = 0;
};

DaoServer::DaoServer(std::shared_ptr<dao::Engine> engine, std::wstring programId)
    : state_(std::make_shared<ServerState>()),
      log(state_->log),
      keepsLog(state_->keepsLog),
      isTerse(state_->isTerse),
      repairsInPlace(state_->repairsInPlace),
      offer_(std::make_unique<Offer>(state_, programId)) {
  state_->engine = std::move(engine);
  state_->makesNewerFiles = programId != L"DAO.DBEngine.36";
}

DaoServer::~DaoServer() = default;

long DaoServer::Objects() const { return state_->objects; }
int DaoServer::Unclosed() const { return state_->unclosed; }
int DaoServer::Calls() const { return state_->calls; }
void DaoServer::FailAt(int call, std::int32_t number) {
  state_->callsToFailure = call;
  state_->failure = number;
}

}  // namespace zimbrat::tests
