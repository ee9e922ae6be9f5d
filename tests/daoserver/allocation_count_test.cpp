#include "allocation_count.h"

#include <gtest/gtest.h>

#include "platform/win32/handles.h"

namespace zimbrat::tests {
namespace {

TEST(AllocationCount, SeesTextsAndArraysUntilTheyAreFree) {
  const AllocationCount count;
  const long before = count.Live();
  {
    platform::Bstr text(::SysAllocString(L"żółw"));
    EXPECT_GT(count.Live(), before);
    platform::Variant array;
    array.Get()->parray = ::SafeArrayCreateVector(VT_UI1, 0, 3);
    array.Get()->vt = VT_ARRAY | VT_UI1;
    const long withArray = count.Live();
    EXPECT_GT(withArray, before + 1);
    platform::Variant copy;
    EXPECT_HRESULT_SUCCEEDED(::VariantCopy(copy.Get(), array.Get()));
    EXPECT_GT(count.Live(), withArray);
    EXPECT_TRUE(::SysReAllocString(text.Receive(), L"żółwie na drzewie"));
  }
  EXPECT_EQ(count.Live(), before);
}

}  // namespace
}  // namespace zimbrat::tests
