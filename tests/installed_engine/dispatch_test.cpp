// Late-bound calls against an object that answers as it is told.
#include <gtest/gtest.h>

#include "platform/error_numbers.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "platform/win32/dao_values.h"
#include "platform/win32/dispatch.h"
#include "platform/win32/wide_text.h"

#include <cfenv>
#include <functional>

namespace zimbrat::tests {
namespace {

using namespace zimbrat::platform;

// On the stack: nobody else releases it.
class Told : public IDispatch {
 public:
  virtual ~Told() = default;

  std::function<HRESULT(DISPPARAMS&, VARIANT*, EXCEPINFO&)> work;
  int references = 0;

  STDMETHODIMP QueryInterface(REFIID, void** object) override {
    *object = this;
    ++references;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(++references); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(--references); }
  STDMETHODIMP GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  STDMETHODIMP GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  STDMETHODIMP GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID* id) override {
    *id = 7;
    return S_OK;
  }
  STDMETHODIMP Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT* result,
                      EXCEPINFO* said, UINT*) override {
    return work(*parameters, result, *said);
  }
};

std::optional<AutomationError> Call(Told& object, Variant& result) {
  const Variant arguments[] = {TextVariant(u"a"), NumberVariant(2)};
  return CallMember(object, 7, Access::Call, arguments, result);
}

HRESULT STDAPICALLTYPE FillIn(EXCEPINFO* said) {
  said->scode = static_cast<SCODE>(0x800A0BD7);
  said->bstrSource = ::SysAllocString(L"DAO.Workspace");
  said->bstrDescription = ::SysAllocString(L"Nieprawidłowe hasło.");
  return S_OK;
}

TEST(Dispatch, TellsTheNumberOfEachCode) {
  const struct {
    std::uint32_t code;
    std::int32_t number;
  } rows[] = {
      {0x800A0BD7, 3031},
      {0x800A0005, 5},
      {0x80020003, 438},
      {0x80020006, 438},
      {0x80020005, 13},
      {0x8002000A, 6},
      {0x8002000E, 450},
      {0x8002000F, 449},
      {0x80020004, 448},
      {0x80040154, 429},
      {0x80004002, 430},
      {0x80004001, 445},
      {0x80004004, 287},
      {0x8007000E, 7},
      {0x80070057, 5},
      {0x80070005, 70},
      {0x80020012, 11},
      {0x8002000B, 9},
      {0x80010108, static_cast<std::int32_t>(0x80010108)},  // the object is gone
      {0x800B0BD7, static_cast<std::int32_t>(0x800B0BD7)},  // another facility
  };
  for (const auto& row : rows)
    EXPECT_EQ(NumberOfCode(static_cast<HRESULT>(row.code)), row.number) << std::hex << row.code;
}

TEST(Dispatch, TakesWhatAnObjectSaysOfAFailureInEachForm) {
  Told object;
  Variant result;
  object.work = [](DISPPARAMS&, VARIANT*, EXCEPINFO& said) {
    said.pfnDeferredFillIn = &FillIn;
    return DISP_E_EXCEPTION;
  };
  auto error = Call(object, result);
  ASSERT_TRUE(error);
  EXPECT_EQ(error->number, 3031);
  EXPECT_EQ(error->source, u"DAO.Workspace");
  EXPECT_EQ(error->description, u"Nieprawidłowe hasło.");
  object.work = [](DISPPARAMS&, VARIANT*, EXCEPINFO& said) {
    said.wCode = 3045;
    return DISP_E_EXCEPTION;
  };
  EXPECT_EQ(Call(object, result)->number, 3045);
  object.work = [](DISPPARAMS&, VARIANT*, EXCEPINFO&) { return DISP_E_EXCEPTION; };
  error = Call(object, result);
  EXPECT_EQ(error->number, 0);
  try {
    Raise(*error);
  } catch (const RunTimeError& raised) {
    EXPECT_EQ(raised.Number(), kErrAutomation);
    EXPECT_FALSE(raised.Description().empty());
  }
  object.work = [](DISPPARAMS&, VARIANT*, EXCEPINFO&) { return E_OUTOFMEMORY; };
  EXPECT_EQ(Call(object, result)->number, kErrOutOfMemory);
}

TEST(Dispatch, PassesArgumentsAndResults) {
  Told object;
  Variant result;
  VARIANT lent = {};
  lent.vt = VT_I2;
  lent.iVal = -5;
  object.work = [&](DISPPARAMS& parameters, VARIANT* answer, EXCEPINFO&) {
    EXPECT_EQ(parameters.cArgs, 2u);
    EXPECT_EQ(parameters.rgvarg[0].lVal, 2) << "the last stands first";
    EXPECT_EQ(parameters.rgvarg[1].vt, VT_BSTR);
    EXPECT_EQ(answer->vt, VT_EMPTY);
    answer->vt = VT_BYREF | VT_VARIANT;
    answer->pvarVal = &lent;
    return S_OK;
  };
  EXPECT_FALSE(Call(object, result));
  EXPECT_EQ(result.Get()->vt, VT_I2);
  EXPECT_EQ(NumberIn(result), -5);

  object.work = [&](DISPPARAMS&, VARIANT* answer, EXCEPINFO&) {
    object.AddRef();
    answer->vt = VT_UNKNOWN;
    answer->punkVal = &object;
    return S_OK;
  };
  {
    Variant given;
    EXPECT_FALSE(Call(object, given));
    const ComReference<IDispatch> kept = ObjectIn(given);
    EXPECT_EQ(object.references, 2);
  }
  EXPECT_EQ(object.references, 0);

  object.work = [](DISPPARAMS& parameters, VARIANT* answer, EXCEPINFO&) {
    EXPECT_EQ(parameters.cNamedArgs, 1u);
    EXPECT_EQ(parameters.rgdispidNamedArgs[0], DISPID_PROPERTYPUT);
    EXPECT_EQ(parameters.rgvarg[0].boolVal, VARIANT_TRUE);
    EXPECT_EQ(answer, nullptr);
    std::fesetround(FE_DOWNWARD);
    return S_OK;
  };
  const Variant flag = FlagVariant(true);
  EXPECT_FALSE(CallMember(object, 7, Access::Put, {&flag, 1}, result));
  EXPECT_EQ(std::fegetround(), FE_TONEAREST) << "an engine that changes how numbers are rounded";
}

TEST(Dispatch, ConvertsAsInEnglish) {
  EXPECT_EQ(TextIn(VariantOf(0.5)), u"0.5");
  EXPECT_EQ(NumberIn(TextVariant(u"12")), 12);
  EXPECT_TRUE(FlagIn(NumberVariant(2)));
  EXPECT_EQ(TextIn(VariantOf(dao::Null{})), u"");
  EXPECT_EQ(NumberIn(Variant()), 0);
  try {
    NumberIn(TextVariant(u"abc"));
    ADD_FAILURE() << "no number";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.Number(), kErrTypeMismatch);
  }
}

TEST(Dispatch, KeepsEachValue) {
  const dao::Guid guid{
      {std::byte{0x33}, std::byte{0x22}, std::byte{0x11}, std::byte{0x00}, std::byte{0xFF}}};
  const dao::Value values[] = {
      dao::Null{},
      true,
      false,
      std::uint8_t{255},
      std::int16_t{-32768},
      std::int32_t{-2147483647},
      dao::Currency{-1},
      0.1f,
      -1e300,
      dao::Date{-36522.75},
      std::u16string(u"za\0żółć", 7),
      std::u16string(),
      dao::Binary(),
      dao::Binary(300, std::byte{0}),
      dao::Decimal{true, {0, 1, 2, 0xFFFFFFFF}, 28},
  };
  for (const dao::Value& value : values)
    EXPECT_EQ(ValueIn(VariantOf(value)), value) << value.index();
  const dao::Value shown = ValueIn(VariantOf(guid));
  EXPECT_EQ(std::get<std::u16string>(shown), u"{guid {00112233-00FF-0000-0000-000000000000}}");
  EXPECT_EQ(FindGuid(shown), guid);
  EXPECT_EQ(FindGuid(dao::Binary(guid.bytes.begin(), guid.bytes.end())), guid);
  for (const char16_t* other : {u"", u"{guid {}}", u"{guid }", u"{guid {00112233}}", u"Kowalski"}) {
    EXPECT_FALSE(FindGuid(std::u16string(other)));
  }
  for (const dao::Decimal& tooLarge :
       {dao::Decimal{false, {1, 0, 0, 0}, 0}, dao::Decimal{false, {0, 0, 0, 1}, 29}}) {
    try {
      VariantOf(tooLarge);
      ADD_FAILURE() << "more than 96 bits";
    } catch (const RunTimeError& error) {
      EXPECT_EQ(error.Number(), kErrOverflow);
    }
  }
}

}  // namespace
}  // namespace zimbrat::tests
