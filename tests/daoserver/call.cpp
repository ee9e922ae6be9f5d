#include "call.h"

#include "platform/error_numbers.h"
#include "platform/win32/wide_text.h"

namespace zimbrat::tests {

const VARIANT& Call::Argument(int position) const {
  return parameters_.rgvarg[static_cast<int>(parameters_.cArgs) - 1 - position];
}

bool Call::IsMissing(int position) const {
  if (position >= static_cast<int>(parameters_.cArgs)) return true;
  const VARIANT& argument = Argument(position);
  return argument.vt == VT_ERROR && argument.scode == DISP_E_PARAMNOTFOUND;
}

std::u16string_view Call::Text(int position) const {
  if (IsMissing(position)) return {};
  const VARIANT& argument = Argument(position);
  if (argument.vt != VT_BSTR) throw Refusal{DISP_E_TYPEMISMATCH};
  return platform::ViewWide({argument.bstrVal, ::SysStringLen(argument.bstrVal)});
}

bool Call::Flag(int position) const {
  if (IsMissing(position)) return false;
  const VARIANT& argument = Argument(position);
  return argument.vt == VT_BOOL ? std::get<bool>(ValueOf(argument)) : Number(position) != 0;
}

std::int32_t Call::Number(int position) const {
  if (IsMissing(position)) return 0;
  const VARIANT& argument = Argument(position);
  if (argument.vt == VT_I4) return argument.lVal;
  if (argument.vt == VT_I2) return argument.iVal;
  throw Refusal{DISP_E_TYPEMISMATCH};
}

dao::Value Call::Value(int position) const {
  return IsMissing(position) ? dao::Value{std::int32_t{0}} : ValueOf(Argument(position));
}

void Call::GiveObject(const Class& of, std::shared_ptr<void> it, OpenDatabasePtr home) {
  const bool isChild = home && &of != &ClassOf<dao::Database>();
  const auto object = std::make_shared<Object>(State(), of, std::move(it), std::move(home), isChild);
  object->AddRef();
  result_.Get()->vt = VT_DISPATCH;
  result_.Get()->pdispVal = object.get();
}

}  // namespace zimbrat::tests
