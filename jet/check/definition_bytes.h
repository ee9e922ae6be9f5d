// The bytes of a table definition, put together from its pages.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "checking.h"

namespace zimbrat::jet::check {

// With `report` false nothing is claimed or reported. Nothing when the pages do not hold what the
// definition's length promises.
std::optional<std::vector<std::byte>> ReadDefinitionBytes(Checking& check,
                                                          const std::u16string& place,
                                                          PageNumber first, bool report);

// The same without claims and reports, as far as the pages can be found.
std::optional<std::vector<std::byte>> PeekDefinitionStart(Checking& check, PageNumber first);

// Reads on from the front; what lies behind the end is zero, and HasFailed tells of it.
class DefinitionReader {
 public:
  DefinitionReader(ConstBytes bytes, std::size_t at) : bytes_(bytes), at_(at) {}

  std::size_t Place() const { return at_; }
  bool HasFailed() const { return hasFailed_; }
  bool HasLeft(std::uint64_t size) const { return size <= bytes_.size() - at_; }
  void Skip(std::size_t size) {
    if (Take(size)) at_ += size;
  }
  template <class T>
  T Next() {
    if (!Take(sizeof(T))) return T{};
    at_ += sizeof(T);
    return GetLittle<T>(bytes_, at_ - sizeof(T));
  }
  RowPointer NextPointer() { return RowPointer::FromPacked(Next<std::uint32_t>()); }
  std::u16string NextName();

 private:
  bool Take(std::size_t size) {
    hasFailed_ = hasFailed_ || !HasLeft(size);
    return !hasFailed_;
  }

  ConstBytes bytes_;
  std::size_t at_;
  bool hasFailed_ = false;
};

}  // namespace zimbrat::jet::check
