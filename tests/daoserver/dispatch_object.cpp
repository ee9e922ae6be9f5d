#include "dispatch_object.h"

#include "platform/error_numbers.h"
#include "platform/text.h"
#include "platform/win32/wide_text.h"
#include "call.h"
#include "values.h"

namespace zimbrat::tests {
namespace {

using platform::RunTimeError;

// Answered by our objects alone: with the object itself.
constexpr IID kOwnInterface = {0x1c3e6a75, 0x2f0d, 0x4f6e, {0xa1, 0x57, 0x90, 0x3b, 0x6d, 0x0e, 0x42, 0xc8}};

bool IsSameName(const wchar_t* a, const wchar_t* b) {
  return ::CompareStringOrdinal(a, -1, b, -1, TRUE) == CSTR_EQUAL;
}

bool IsMissing(const VARIANT& argument) {
  return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
}

HRESULT CheckPut(const Member& member, const DISPPARAMS& parameters, const VARIANT* result) {
  if (member.put == nullptr) return DISP_E_MEMBERNOTFOUND;
  const bool isNamed = parameters.cNamedArgs == 1 && parameters.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
  if (!isNamed || result != nullptr) return E_INVALIDARG;
  return parameters.cArgs == 1 ? S_OK : DISP_E_BADPARAMCOUNT;
}

HRESULT CheckCall(const Member& member, WORD kind, const DISPPARAMS& parameters) {
  const WORD needed = member.kind == Kind::Property ? DISPATCH_PROPERTYGET : DISPATCH_METHOD;
  const bool isOther = (kind & ~(DISPATCH_METHOD | DISPATCH_PROPERTYGET)) != 0;
  if (isOther || (kind & needed) == 0) return DISP_E_MEMBERNOTFOUND;
  if (parameters.cNamedArgs != 0) return DISP_E_NONAMEDARGS;
  const int count = static_cast<int>(parameters.cArgs);
  if (count < member.required || count > member.required + member.optional) return DISP_E_BADPARAMCOUNT;
  for (int i = 0; i < member.required; ++i) {
    if (IsMissing(parameters.rgvarg[count - 1 - i])) return DISP_E_PARAMNOTOPTIONAL;
  }
  return S_OK;
}

void FillIn(const RunTimeError& error, EXCEPINFO& said) {
  said.bstrSource = MakeBstr(error.Source());
  said.bstrDescription = MakeBstr(error.Description());
}

SCODE CodeOf(const RunTimeError& error) {
  const bool isWord = error.Number() >= 0 && error.Number() <= 0xFFFF;
  return static_cast<SCODE>(isWord ? 0x800A0000u + static_cast<unsigned>(error.Number()) : error.Number());
}

HRESULT STDAPICALLTYPE FillInLater(EXCEPINFO* said) {
  const auto& error = *static_cast<const RunTimeError*>(said->pvReserved);
  said->pvReserved = nullptr;
  said->scode = CodeOf(error);
  FillIn(error, *said);
  return S_OK;
}

}  // namespace

void OpenDatabase::ChildGone() noexcept {
  --children_;
  if (!isClosed_ || children_ != 0) return;
  try {
    database_->Close();
  } catch (const std::exception&) {
    // Too late to be told.
  }
}

void Fail(std::int32_t number, std::u16string source) {
  throw RunTimeError(number, std::move(source), u"Błąd " + platform::DecimalText(number) + u" serwera.");
}

Object::Object(std::shared_ptr<ServerState> state, const Class& of, std::shared_ptr<void> it,
               OpenDatabasePtr home, bool isChild)
    : state_(std::move(state)), class_(of), it_(std::move(it)), home_(std::move(home)), isChild_(isChild) {
  ++state_->objects;
  if (isChild_) home_->ChildMade();
}

Object::~Object() {
  it_.reset();
  if (isChild_) home_->ChildGone();
  --state_->objects;
}

std::shared_ptr<Object> Object::Behind(IUnknown* pointer) {
  void* found = nullptr;
  if (pointer == nullptr || FAILED(pointer->QueryInterface(kOwnInterface, &found))) return nullptr;
  auto& object = *static_cast<Object*>(found);
  const std::shared_ptr<Object> kept = object.shared_from_this();
  object.Release();
  return kept;
}

STDMETHODIMP Object::QueryInterface(REFIID type, void** object) {
  const bool isOwn = ::IsEqualIID(type, kOwnInterface);
  const bool isKnown = ::IsEqualIID(type, IID_IUnknown) || ::IsEqualIID(type, IID_IDispatch);
  *object = nullptr;
  if (isOwn) *object = this;
  if (isKnown) *object = static_cast<IDispatch*>(this);
  if (*object == nullptr) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

STDMETHODIMP_(ULONG) Object::AddRef() {
  if (references_ == 0) self_ = shared_from_this();
  return ++references_;
}

STDMETHODIMP_(ULONG) Object::Release() {
  const ULONG left = --references_;
  const std::shared_ptr<Object> last = left == 0 ? std::move(self_) : nullptr;
  return left;
}

STDMETHODIMP Object::GetTypeInfoCount(UINT* count) {
  *count = 0;
  return S_OK;
}

STDMETHODIMP Object::GetIDsOfNames(REFIID type, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
  if (!::IsEqualIID(type, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  // Names of arguments are not offered.
  for (UINT i = 0; i < count; ++i) ids[i] = DISPID_UNKNOWN;
  DISPID id = class_.hasDefault ? 0 : 1;
  for (const Member& member : class_.members) {
    if (IsSameName(member.name, names[0])) ids[0] = id;
    ++id;
  }
  return ids[count - 1] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
}

const Member* Object::Find(DISPID id) const {
  const auto position = static_cast<std::size_t>(id - (class_.hasDefault ? 0 : 1));
  return position < class_.members.size() ? &class_.members[position] : nullptr;
}

void Object::Log(const Member& member, bool isPut) {
  if (!state_->keepsLog) return;
  const std::wstring line = std::wstring(class_.name) + L"." + member.name + (isPut ? L"=" : L"");
  state_->log.push_back(platform::Utf8FromUtf16(platform::ViewWide(line)));
}

void Object::FailWhereTold() {
  if (state_->callsToFailure == 0 || --state_->callsToFailure != 0) return;
  Fail(state_->failure, u"DAO.Awaria");
}

STDMETHODIMP Object::Invoke(DISPID id, REFIID type, LCID, WORD kind, DISPPARAMS* parameters, VARIANT* result,
                            EXCEPINFO* said, UINT*) {
  if (!::IsEqualIID(type, IID_NULL)) return DISP_E_UNKNOWNINTERFACE;
  if (parameters == nullptr) return E_INVALIDARG;
  ++state_->calls;
  try {
    const Member* member = Find(id);
    const bool isPut = kind == DISPATCH_PROPERTYPUT;
    if (member != nullptr) Log(*member, isPut);
    FailWhereTold();
    if (member == nullptr) return DISP_E_MEMBERNOTFOUND;
    const HRESULT wrong = isPut ? CheckPut(*member, *parameters, result) : CheckCall(*member, kind, *parameters);
    if (FAILED(wrong)) return wrong;
    if (home_ && home_->IsClosed()) Fail(platform::kErrObjectInvalid, class_.source);
    Call call(*this, *parameters);
    (isPut ? member->put : member->work)(call);
    if (result != nullptr) *result = call.TakeResult();
    return S_OK;
  } catch (const Refusal& refusal) {
    return refusal.code;
  } catch (const std::exception&) {
    return Tell(platform::CurrentRunTimeError(), said);
  }
}

HRESULT Object::Tell(const RunTimeError& error, EXCEPINFO* said) try {
  state_->errors = {RunTimeError(3000, u"DAO", u"Niższa warstwa."), error};
  if (said == nullptr) return DISP_E_EXCEPTION;
  *said = {};
  if (!state_->isTerse && error.Source() == u"DAO.Recordset") {
    said->pvReserved = &state_->errors.back();
    said->pfnDeferredFillIn = &FillInLater;
    return DISP_E_EXCEPTION;
  }
  said->scode = CodeOf(error);
  if (!state_->isTerse) FillIn(error, *said);
  return DISP_E_EXCEPTION;
} catch (const std::exception&) {
  return E_OUTOFMEMORY;
} catch (const Refusal& refusal) {
  return refusal.code;
}

}  // namespace zimbrat::tests
