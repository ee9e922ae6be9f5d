#include "tests/support/unsynced_writes.h"

#include <algorithm>

namespace zimbrat::tests {
namespace {

constexpr std::uint64_t kMostBytes = 1u << 30;

bool IsKept(PowerLoss loss, std::uint32_t& seed) {
  seed = seed * 1664525u + 1013904223u;
  return loss == PowerLoss::Keep || (loss == PowerLoss::Shuffle && (seed >> 16 & 1) != 0);
}

void PutFile(platform::Files& files, const std::u16string& path, const std::string& content) {
  const auto former = files.State(path);
  if (former) files.Delete(path);
  const bool isPrivate = former && former->isPrivate.value_or(false);
  const auto file = files.Open(
      path, isPrivate ? platform::OpenMode::CreatePrivate : platform::OpenMode::CreateNew,
      platform::Sharing::None);
  file->WriteAt(0, std::as_bytes(std::span<const char>(content)));
}

}  // namespace

UnsyncedWrites::State& UnsyncedWrites::Known(std::u16string_view path) {
  const auto [found, isNew] = states_.try_emplace(std::u16string(path));
  if (isNew && files_.IsFile(path)) found->second.flushed = files_.ReadAll(path, kMostBytes);
  return found->second;
}

void UnsyncedWrites::Created(std::u16string_view path) {
  State& state = Known(path);
  state.flushed.clear();
  state.changes.clear();
  state.isNameDurable = false;
}

void UnsyncedWrites::BeforeWrite(std::u16string_view path, std::uint64_t offset,
                                 std::span<const std::byte> bytes) {
  const auto* text = reinterpret_cast<const char*>(bytes.data());
  Known(path).changes.push_back({offset, std::string(text, bytes.size())});
}

void UnsyncedWrites::BeforeResize(std::u16string_view path, std::uint64_t size) {
  Known(path).changes.push_back({size, std::nullopt});
}

void UnsyncedWrites::BeforeDelete(std::u16string_view path) {
  State& state = Known(path);
  if (state.isNameDurable) state.deleted = state.flushed;
  state.changes.clear();
}

void UnsyncedWrites::Flushed(std::u16string_view path) {
  State& state = Known(path);
  state.changes.clear();
  if (files_.IsFile(path)) state.flushed = files_.ReadAll(path, kMostBytes);
}

void UnsyncedWrites::FolderFlushed(std::u16string_view folder) {
  for (auto& [path, state] : states_) {
    if (platform::FolderOfPath(path) != folder) continue;
    state.isNameDurable = true;
    state.deleted.reset();
  }
}

// The name is durable then; what the file lacked of a flush it lacks under its new name.
void UnsyncedWrites::Replaced(std::u16string_view from, std::u16string_view to) {
  auto moved = states_.extract(std::u16string(from));
  states_.erase(std::u16string(to));
  if (!moved.empty()) {
    moved.key() = std::u16string(to);
    states_.insert(std::move(moved));
  }
  FolderFlushed(platform::FolderOfPath(to));
}

void UnsyncedWrites::Rebuild(const std::u16string& path, const State& state, PowerLoss loss,
                             std::uint32_t& seed) {
  if (!files_.IsFile(path)) {
    if (state.deleted && !IsKept(loss, seed)) PutFile(files_, path, *state.deleted);
    return;
  }
  if (!state.isNameDurable && !IsKept(loss, seed)) {
    files_.Delete(path);
    return;
  }
  std::string content = state.flushed;
  for (const Change& change : state.changes) {
    if (!IsKept(loss, seed)) continue;
    if (!change.bytes) {
      content.resize(static_cast<std::size_t>(change.offset));
      continue;
    }
    const auto offset = static_cast<std::size_t>(change.offset);
    content.resize(std::max(content.size(), offset + change.bytes->size()));
    content.replace(offset, change.bytes->size(), *change.bytes);
  }
  if (content != files_.ReadAll(path, kMostBytes)) PutFile(files_, path, content);
}

void UnsyncedWrites::LosePower(PowerLoss loss, std::uint32_t seed) {
  for (const auto& [path, state] : states_) Rebuild(path, state, loss, seed);
  states_.clear();
}

}  // namespace zimbrat::tests
