#include <array>
#include <cstdio>
#include <string>
#include <utility>

#include "dao_repair.h"
#include "dao_session.h"
#include "floating_point.h"
#include "wide_text.h"

#include "platform/dao_errors.h"
#include "platform/error_numbers.h"
#include "platform/installed_engine.h"
#include "platform/run_time_error.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

struct Product {
  const char16_t* programId;
  bool isFor32Bits = false;  // alone
};

// In the order of preference. DAO 3.6 is part of every Windows; DAO 3.5 cannot hold the format.
constexpr Product kProducts[] = {
    {u"DAO.DBEngine.36", true}, {u"DAO.DBEngine.120"}, {u"DAO.DBEngine.140"},
    {u"DAO.DBEngine.150"},      {u"DAO.DBEngine.160"}, {u"DAO.DBEngine.170"},
};

class DaoEngine : public dao::Engine {
 public:
  DaoEngine(const char16_t* programId, const InstalledEngineNeeds& needs,
            ComReference<IDispatch> object)
      : programId_(programId),
        needs_(needs),
        scope_(MakeScope(*object.Get())),
        object_(scope_, dao::kSourceEngine, std::move(object)) {}

  std::u16string Name() override { return programId_; }
  std::u16string Version() override { return TextIn(object_.Ask(u"Version")); }
  std::shared_ptr<dao::Workspace> CreateWorkspace(std::u16string_view name,
                                                  std::u16string_view user,
                                                  std::u16string_view password) override {
    return MakeDaoWorkspace(object_, needs_.clock, name, user, password);
  }
  dao::RepairOutcome RepairDatabase(std::u16string_view path) override {
    return RepairByEngine(object_, needs_, path);
  }

 private:
  static DaoScopePtr MakeScope(IDispatch& object) {
    object.AddRef();
    return std::make_shared<DaoScope>(
        std::make_shared<DaoContext>(ComReference<IDispatch>(&object)));
  }

  const char16_t* programId_;
  InstalledEngineNeeds needs_;
  DaoScopePtr scope_;
  DaoObject object_;
};

// With functions that do nothing in the place of empty ones.
InstalledEngineNeeds Complete(InstalledEngineNeeds needs) {
  if (!needs.password) needs.password = [](std::u16string_view, bool) { return std::nullopt; };
  if (!needs.pulse) needs.pulse = [] {};
  return needs;
}

std::u16string HexText(HRESULT code) {
  std::array<char, 16> digits;
  std::snprintf(digits.data(), digits.size(), "0x%08lX", static_cast<unsigned long>(code));
  return Utf16FromUtf8(digits.data());
}

// A class may be registered whose library is not there, is of the other bitness, or does not start.
std::shared_ptr<dao::Engine> MakeEngine(const char16_t* programId, const CLSID& type,
                                        const InstalledEngineNeeds& needs) {
  ComReference<IDispatch> object;
  const FloatingPoint kept;
  const HRESULT code = ::CoCreateInstance(type, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                          reinterpret_cast<void**>(object.Receive()));
  if (FAILED(code)) {
    throw RunTimeError(kErrCannotCreateObject, dao::kSourceEngine.data(), HexText(code));
  }
  auto engine = std::make_shared<DaoEngine>(programId, needs, std::move(object));
  engine->Version();
  engine->CreateWorkspace(u"", u"Admin", u"")->Close();
  return engine;
}

// Null when it is not there or cannot work.
std::shared_ptr<dao::Engine> TryEngine(const char16_t* programId, const InstalledEngineNeeds& needs,
                                       const UnusableEngine& unusable) {
  CLSID type = {};
  if (FAILED(::CLSIDFromProgID(Lend(programId), &type))) return nullptr;
  try {
    return MakeEngine(programId, type, needs);
  } catch (const std::exception&) {
    const RunTimeError error = CurrentRunTimeError();
    if (unusable)
      unusable(programId + (u": " + DecimalText(error.Number())) + u" " + error.Description());
    return nullptr;
  }
}

}  // namespace

std::shared_ptr<dao::Engine> FindInstalledEngine(const InstalledEngineNeeds& needs,
                                                 const UnusableEngine& unusable) {
  const Apartment apartment;
  const InstalledEngineNeeds complete = Complete(needs);
  for (const Product& product : kProducts) {
    if (product.isFor32Bits && sizeof(void*) != 4) continue;
    if (auto engine = TryEngine(product.programId, complete, unusable)) return engine;
  }
  return nullptr;
}

}  // namespace zimbrat::platform
