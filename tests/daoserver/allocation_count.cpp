#include "allocation_count.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>
#include <oleauto.h>

#include <atomic>

// Exported by the system, without a header.
extern "C" void WINAPI SetOaNoCache();

namespace zimbrat::tests {

// COM keeps it until the last block that it saw is free.
class AllocationSpy : public IMallocSpy, public std::enable_shared_from_this<AllocationSpy> {
 public:
  virtual ~AllocationSpy() = default;
  long Live() const { return seen_ - freed_; }
  long Seen() const { return seen_; }

  STDMETHODIMP QueryInterface(REFIID type, void** object) override {
    const bool isKnown = ::IsEqualIID(type, IID_IUnknown) || ::IsEqualIID(type, IID_IMallocSpy);
    *object = isKnown ? this : nullptr;
    if (!isKnown) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override {
    if (references_ == 0) self_ = shared_from_this();
    return ++references_;
  }
  STDMETHODIMP_(ULONG) Release() override {
    const ULONG left = --references_;
    const std::shared_ptr<AllocationSpy> last = left == 0 ? std::move(self_) : nullptr;
    return left;
  }

  STDMETHODIMP_(SIZE_T) PreAlloc(SIZE_T size) override { return size; }
  STDMETHODIMP_(void*) PostAlloc(void* block) override {
    seen_ += block != nullptr ? 1 : 0;
    return block;
  }
  STDMETHODIMP_(void*) PreFree(void* block, BOOL isSeen) override {
    freed_ += isSeen && block != nullptr ? 1 : 0;
    return block;
  }
  STDMETHODIMP_(void) PostFree(BOOL) override {}
  STDMETHODIMP_(SIZE_T) PreRealloc(void* block, SIZE_T size, void** taken, BOOL) override {
    *taken = block;
    return size;
  }
  STDMETHODIMP_(void*) PostRealloc(void* block, BOOL) override { return block; }
  STDMETHODIMP_(void*) PreGetSize(void* block, BOOL) override { return block; }
  STDMETHODIMP_(SIZE_T) PostGetSize(SIZE_T size, BOOL) override { return size; }
  STDMETHODIMP_(void*) PreDidAlloc(void* block, BOOL) override { return block; }
  STDMETHODIMP_(int) PostDidAlloc(void*, BOOL, int answer) override { return answer; }
  STDMETHODIMP_(void) PreHeapMinimize() override {}
  STDMETHODIMP_(void) PostHeapMinimize() override {}

 private:
  std::atomic<long> seen_ = 0;
  std::atomic<long> freed_ = 0;
  std::atomic<ULONG> references_ = 0;
  std::shared_ptr<AllocationSpy> self_;
};

AllocationCount::AllocationCount() : spy_(std::make_shared<AllocationSpy>()) {
  ::SetOaNoCache();
  EXPECT_HRESULT_SUCCEEDED(::CoRegisterMallocSpy(spy_.get()));
}

AllocationCount::~AllocationCount() { ::CoRevokeMallocSpy(); }

long AllocationCount::Live() const { return spy_->Live(); }
long AllocationCount::Seen() const { return spy_->Seen(); }

}  // namespace zimbrat::tests
