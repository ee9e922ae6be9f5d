#include "allocations.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace zimbrat::tests {

void Allocations::Begin(std::uint64_t call, bool forGood) {
  // Else nobody would learn which one it was.
  std::set_terminate([] {
    std::fprintf(stderr, "terminated after the failure of allocation %llu\n",
                 static_cast<unsigned long long>(failsAt.load()));
    std::abort();
  });
  made = 0;
  hasFailed = false;
  failsForGood = forGood;
  failsAt = call;
}

namespace {

void* Allocate(std::size_t size) {
  const std::uint64_t number = ++Allocations::made;
  const std::uint64_t first = Allocations::failsAt;
  if (first != 0 && (number == first || (Allocations::failsForGood && number > first))) {
    Allocations::hasFailed = true;
    throw std::bad_alloc();
  }
  if (void* const memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

}  // namespace
}  // namespace zimbrat::tests

void* operator new(std::size_t size) { return zimbrat::tests::Allocate(size); }
void* operator new[](std::size_t size) { return zimbrat::tests::Allocate(size); }
// The standard library's sorting asks so, and does without when there is none.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  try {
    return zimbrat::tests::Allocate(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
