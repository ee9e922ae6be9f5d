#include "damage.h"

#include "base_databases.h"

namespace zimbrat::fuzz {

namespace {

constexpr std::size_t kPageSize = 4096;
constexpr std::size_t kEditHead = 4;

class Editor {
 public:
  explicit Editor(tests::FileBytes bytes) : bytes_(std::move(bytes)), pages_(bytes_.size() / kPageSize) {}

  // Takes an edit off the front of `rest`; false when there is no whole one.
  bool Apply(Input& rest) {
    if (rest.size() < kEditHead) return false;
    const unsigned kind = rest[0] % 16;
    const std::size_t page = rest[1] % pages_ * kPageSize;
    const std::size_t place = page + (rest[2] + 256u * rest[3]) % kPageSize;
    const std::size_t size = kind < 12 ? kind + 1 : kind < 14 ? 1 : 0;
    if (rest.size() < kEditHead + size) return false;
    const Input data = rest.subspan(kEditHead, size);
    rest = rest.subspan(kEditHead + size);
    if (place < bytes_.size()) Change(kind, page, place, data);
    return true;
  }
  tests::FileBytes Take() { return std::move(bytes_); }

 private:
  void Change(unsigned kind, std::size_t page, std::size_t place, Input data) {
    const auto at = [&](std::size_t offset) { return bytes_.begin() + static_cast<std::ptrdiff_t>(offset); };
    const std::size_t end = std::min(page + kPageSize, bytes_.size());
    switch (kind) {
      case 12: bytes_[place] ^= std::byte{data[0]}; break;
      case 13: {
        const std::size_t from = data[0] % pages_ * kPageSize;
        if (from + kPageSize <= bytes_.size() && end == page + kPageSize && from != page) {
          std::copy_n(at(from), kPageSize, at(page));
        }
        break;
      }
      case 14: std::fill(at(place), at(end), std::byte{0}); break;
      case 15: bytes_.resize(place); break;
      default:
        for (std::size_t i = 0; i < data.size() && place + i < bytes_.size(); ++i) {
          bytes_[place + i] = std::byte{data[i]};
        }
    }
  }

  tests::FileBytes bytes_;
  std::size_t pages_;
};

}  // namespace

tests::FileBytes DamagedDatabase(Input input) {
  const auto bases = BaseDatabases();
  Editor editor(bases[input.empty() ? 0 : input[0] % bases.size()]);
  Input rest = input.subspan(input.empty() ? 0 : 1);
  while (editor.Apply(rest)) continue;
  return editor.Take();
}

}  // namespace zimbrat::fuzz
