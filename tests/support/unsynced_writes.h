// What a disk may forget when the power goes: everything written since the last flush of a file, and the
// names made or removed since the last flush of their folder.
//
// The writes themselves go through at once. For each file the content at its last flush and the writes
// since are kept, so that LosePower can rebuild what the disk might hold. Replace counts as durable with
// all that its source holds, as the interface promises.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace zimbrat::tests {

enum class PowerLoss {
  Drop,     // nothing that was not flushed is there
  Keep,     // everything is
  Shuffle,  // some of it, chosen by the seed
};

class UnsyncedWrites {
 public:
  explicit UnsyncedWrites(platform::Files& files) : files_(files) {}

  void Created(std::u16string_view path);
  // The three before the operation itself.
  void BeforeWrite(std::u16string_view path, std::uint64_t offset, std::span<const std::byte> bytes);
  void BeforeResize(std::u16string_view path, std::uint64_t size);
  void BeforeDelete(std::u16string_view path);
  void Flushed(std::u16string_view path);
  void FolderFlushed(std::u16string_view folder);
  void Replaced(std::u16string_view from, std::u16string_view to);

  // Puts the files into a state that the disk might be in. Nothing may be open.
  void LosePower(PowerLoss loss, std::uint32_t seed = 1);

 private:
  struct Change {
    std::uint64_t offset = 0;        // of a write; the new size of a resize
    std::optional<std::string> bytes;  // nothing for a resize
  };
  struct State {
    bool isNameDurable = true;
    std::optional<std::string> deleted;  // the content, when the removal is not durable
    std::string flushed;
    std::vector<Change> changes;
  };

  State& Known(std::u16string_view path);
  void Rebuild(const std::u16string& path, const State& state, PowerLoss loss, std::uint32_t& seed);

  platform::Files& files_;
  std::map<std::u16string, State, std::less<>> states_;
};

}  // namespace zimbrat::tests
