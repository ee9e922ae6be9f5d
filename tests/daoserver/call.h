// One call of a member: its arguments in their order, and the result. And what makes members of dao.h's
// functions, so that a class is a table of them.
#pragma once

#include <cstddef>
#include <type_traits>
#include <utility>

#include "dispatch_object.h"
#include "platform/win32/handles.h"
#include "values.h"

namespace zimbrat::tests {

// How the objects of an interface show themselves.
template <class T>
const Class& ClassOf();
const Class& EngineClass();

class Call {
 public:
  Call(Object& on, const DISPPARAMS& parameters) : on_(on), parameters_(parameters) {}

  template <class T>
  T& It() const {
    return *static_cast<T*>(on_.It().get());
  }
  const std::shared_ptr<ServerState>& State() const { return on_.State(); }
  const OpenDatabasePtr& Home() const { return on_.Home(); }
  const char16_t* Source() const { return on_.Of().source; }

  // Arguments from 0. What is missing gives an empty text, 0 or false.
  bool IsMissing(int position) const;
  const VARIANT& Argument(int position) const;
  std::u16string_view Text(int position) const;
  bool Flag(int position) const;
  std::int32_t Number(int position) const;
  dao::Value Value(int position) const;
  template <class T>
  std::shared_ptr<T> Given(int position) const;
  template <class A>
  auto Take(int position) const;

  void Give(bool value) { PutValue(value, *result_.Get()); }
  void Give(std::int16_t value) { PutValue(value, *result_.Get()); }
  void Give(std::int32_t value) { PutValue(value, *result_.Get()); }
  void Give(const dao::Value& value) { PutValue(value, *result_.Get()); }
  void Give(const std::u16string& text) { PutValue(text, *result_.Get()); }
  template <class T>
  void Give(const std::shared_ptr<T>& object) {
    GiveObject(ClassOf<T>(), object, Home());
  }
  void GiveObject(const Class& of, std::shared_ptr<void> it, OpenDatabasePtr home = nullptr);
  VARIANT TakeResult() { return std::exchange(*result_.Get(), VARIANT{}); }

 private:
  Object& on_;
  const DISPPARAMS& parameters_;
  platform::Variant result_;
};

template <class T>
std::shared_ptr<T> Call::Given(int position) const {
  const VARIANT& argument = Argument(position);
  const auto object = argument.vt == VT_DISPATCH ? Object::Behind(argument.pdispVal) : nullptr;
  if (!object || &object->Of() != &ClassOf<T>()) throw Refusal{DISP_E_TYPEMISMATCH};
  return std::static_pointer_cast<T>(object->It());
}

template <class T>
struct PointedTo {};
template <class T>
struct PointedTo<std::shared_ptr<T>> {
  using Type = T;
};

template <class A>
auto Call::Take(int position) const {
  using T = std::remove_cvref_t<A>;
  if constexpr (std::is_same_v<T, std::u16string_view>) {
    return Text(position);
  } else if constexpr (std::is_same_v<T, bool>) {
    return Flag(position);
  } else if constexpr (std::is_same_v<T, std::int32_t>) {
    return Number(position);
  } else if constexpr (std::is_same_v<T, dao::Value>) {
    return Value(position);
  } else {
    return Given<typename PointedTo<T>::Type>(position);
  }
}

// Calls a function of dao.h with the first arguments of the call, and gives what it returns.
template <auto function>
struct Passed;
template <class T, class R, class... A, R (T::*function)(A...)>
struct Passed<function> {
  static void Do(Call& call) { Pass(call, std::index_sequence_for<A...>{}); }

  template <std::size_t... positions>
  static void Pass(Call& call, std::index_sequence<positions...>) {
    if constexpr (std::is_void_v<R>) {
      (call.It<T>().*function)(call.Take<A>(static_cast<int>(positions))...);
    } else {
      call.Give((call.It<T>().*function)(call.Take<A>(static_cast<int>(positions))...));
    }
  }
};

template <auto get>
constexpr Member Read(const wchar_t* name) {
  return {name, Kind::Property, 0, 0, &Passed<get>::Do};
}
template <auto get, auto set>
constexpr Member ReadWrite(const wchar_t* name) {
  return {name, Kind::Property, 0, 0, &Passed<get>::Do, &Passed<set>::Do};
}
template <auto function>
constexpr Member Method(const wchar_t* name, int required = 0, int optional = 0) {
  return {name, Kind::Method, required, optional, &Passed<function>::Do};
}
constexpr Member Method(const wchar_t* name, int required, int optional, Work work) {
  return {name, Kind::Method, required, optional, work};
}
constexpr Member Property(const wchar_t* name, Work get, Work put = nullptr) {
  return {name, Kind::Property, 0, 0, get, put};
}

}  // namespace zimbrat::tests
