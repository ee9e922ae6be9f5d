#include "platform/secret.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/text.h"

namespace zimbrat::platform {

void WipeMemory(void* start, std::size_t bytes) {
  volatile auto* byte = static_cast<unsigned char*>(start);
  for (std::size_t i = 0; i < bytes; ++i) byte[i] = 0;
}

Secret::Secret(Secret&& other) noexcept { *this = std::move(other); }

Secret& Secret::operator=(Secret&& other) noexcept {
  if (this == &other) return *this;
  Clear();
  units_ = std::move(other.units_);
  size_ = std::exchange(other.size_, 0);
  capacity_ = std::exchange(other.capacity_, 0);
  return *this;
}

Secret& Secret::operator=(std::u16string_view text) {
  *this = Secret(text);  // which may be a part of this one
  return *this;
}

void Secret::Append(std::u16string_view text) {
  constexpr std::size_t kLeastRoom = 32;
  if (size_ + text.size() <= capacity_) {
    std::copy(text.begin(), text.end(), units_.get() + size_);
    size_ += text.size();
    return;
  }
  Secret grown;
  grown.capacity_ = std::max({kLeastRoom, 2 * capacity_, size_ + text.size()});
  grown.units_ = std::make_unique<char16_t[]>(grown.capacity_);
  grown.Append(View());
  grown.Append(text);
  *this = std::move(grown);
}

void Secret::Clear() {
  if (units_) WipeMemory(units_.get(), capacity_ * sizeof(char16_t));
  units_.reset();
  size_ = capacity_ = 0;
}

Secret SecretFromUtf8(std::string_view utf8) {
  std::u16string text = Utf16FromUtf8(utf8);  // which takes its room once
  Secret secret(text);
  Wipe(text);
  return secret;
}

}  // namespace zimbrat::platform
