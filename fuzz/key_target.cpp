// Sort keys: of any two texts, and bytes that claim to be keys.
#include <algorithm>
#include <iterator>

#include "jet/index/collation.h"
#include "jet/index/key.h"
#include "outcome.h"
#include "platform/dao.h"
#include "targets.h"
#include "text_input.h"

namespace zimbrat::fuzz {

namespace {

void CompareKeys(const std::u16string& a, const std::u16string& b) {
  std::vector<std::byte> keyOfA, keyOfB;
  jet::AppendTextKey(a, true, keyOfA);
  jet::AppendTextKey(b, true, keyOfB);
  Require((jet::CompareText(a, b) < 0) == (keyOfA < keyOfB), "keys order otherwise than the texts");
  Require(jet::EqualText(a, b) == (keyOfA == keyOfB), "keys are equal otherwise than the texts");
}

// Accents of many combining marks add up to any byte, the one that ends a key too.
bool MayEndEarly(const std::u16string& text) {
  std::vector<std::byte> key;
  jet::AppendTextKey(text, true, key);
  Require(!key.empty() && key.back() == std::byte{0}, "a key has no end");
  return std::find(key.begin(), key.end(), std::byte{0}) != std::prev(key.end());
}

void SplitBytes(Input input) {
  constexpr jet::KeyColumn kColumns[] = {{dao::dbText, true}, {dao::dbLong, false}, {dao::dbDouble, true},
                                         {dao::dbText, false}, {dao::dbBinary, true}, {dao::dbGUID, true}};
  for (std::size_t count = 1; count <= std::size(kColumns); ++count) {
    const auto columns = std::span(kColumns).first(count);
    const auto parts = jet::SplitKey(columns, std::as_bytes(input));
    if (!parts) continue;
    Require(parts->count == count, "a key was split into another number of columns");
    jet::IsAllNullKey(columns, std::as_bytes(input));
  }
}

}  // namespace

// The first byte tells the length of the first text, or that the rest is a key.
void MakeKeys(Input input) {
  constexpr std::uint8_t kIsKey = 0xFF;
  const std::uint8_t length = TakeByte(input);
  if (length == kIsKey) return SplitBytes(input);
  const std::size_t size = std::min<std::size_t>(length, input.size());
  const std::u16string a = TextOf(input.first(size)), b = TextOf(input.subspan(size));
  if (a.size() + b.size() > jet::kMaxIndexedUnits) return;
  CompareKeys(a, b);
  const jet::KeyColumn columns[] = {{dao::dbText, false}, {dao::dbText, true}};
  const dao::Value values[] = {a, b};
  if (MayEndEarly(a) || MayEndEarly(b)) return;
  Attempt([&] {
    const auto parts = jet::SplitKey(columns, jet::EncodeKey(columns, values));
    Require(parts && parts->count == 2, "a key cannot be split");
  });
}

}  // namespace zimbrat::fuzz
