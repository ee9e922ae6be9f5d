// Counts the memory that automation holds: texts, arrays, whatever COM's task allocator gave.
#pragma once

#include <memory>

namespace zimbrat::tests {

class AllocationSpy;

// One at a time. Puts out the system's cache of texts for the rest of the process.
class AllocationCount {
 public:
  AllocationCount();
  ~AllocationCount();
  AllocationCount(const AllocationCount&) = delete;
  AllocationCount& operator=(const AllocationCount&) = delete;

  // Blocks that were allocated since the count began and are not free yet.
  long Live() const;
  // All that were allocated since.
  long Seen() const;

 private:
  std::shared_ptr<AllocationSpy> spy_;
};

}  // namespace zimbrat::tests
