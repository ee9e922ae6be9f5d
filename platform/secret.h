// A text that leaves no trace in memory: a password from where it is read to where it is used. What it
// occupied is overwritten before it is given back, also when the text grows, is replaced or is moved.
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace zimbrat::platform {

class Secret {
 public:
  Secret() = default;
  explicit Secret(std::u16string_view text) { Append(text); }
  ~Secret() { Clear(); }
  // The text changes hands without being copied; the source is empty afterwards.
  Secret(Secret&& other) noexcept;
  Secret& operator=(Secret&& other) noexcept;
  Secret& operator=(std::u16string_view text);
  Secret(const Secret&) = delete;
  Secret& operator=(const Secret&) = delete;

  void Append(std::u16string_view text);
  void Clear();
  bool IsEmpty() const { return size_ == 0; }
  // Valid until the text changes.
  std::u16string_view View() const { return {units_.get(), size_}; }
  operator std::u16string_view() const { return View(); }

 private:
  // A buffer of its own for every length: a short text inside the object would stay behind on a move.
  std::unique_ptr<char16_t[]> units_;
  std::size_t size_ = 0;
  std::size_t capacity_ = 0;
};

// UTF-8 of a password; broken bytes become U+FFFD.
Secret SecretFromUtf8(std::string_view utf8);

// Overwrites memory in a way that the compiler does not remove.
void WipeMemory(void* start, std::size_t bytes);

}  // namespace zimbrat::platform
