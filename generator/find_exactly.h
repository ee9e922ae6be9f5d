// Members of engine collections by their exact names: the engine compares without regard to case,
// the structure files do not.
#pragma once

#include "platform/dao.h"

#include <memory>
#include <string_view>

namespace zimbrat::generator {

// The first member of that name, or null.
template <class T>
std::shared_ptr<T> FindExactly(dao::Collection<T>& collection, std::u16string_view name) {
  const int count = collection.Count();
  for (int position = 0; position < count; ++position) {
    std::shared_ptr<T> item = collection.Item(position);
    if (item->Name() == name) return item;
  }
  return nullptr;
}

}  // namespace zimbrat::generator
