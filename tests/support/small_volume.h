// A volume in memory with limited room, with folders that are made for good, sharing, holds and files
// that stay as long as somebody has them open. Names are matched to the letter; there are no links.
#pragma once

#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "platform/files.h"

namespace zimbrat::tests {

class SmallVolume : public platform::Files {
 public:
  // Bytes of all files together; a write or growth beyond it puts what fits and raises error 61.
  std::uint64_t room = std::numeric_limits<std::uint64_t>::max();
  // FreeSpace says that there is plenty, so that the fullness is met in the middle of the work.
  bool liesAboutRoom = false;
  // The rename is carried out, then making it durable fails with error 57.
  bool failsAfterReplace = false;

  std::uint64_t Used() const { return shared_->used; }
  // The most that was used at a time.
  std::uint64_t MostUsed() const { return shared_->most; }

  // Content as the test has it; a file of that name is made or overwritten.
  void Put(std::u16string_view path, std::string_view content);
  std::string Get(std::u16string_view path) const;
  // Names of a folder in their order, holds included, as "<name>.lock".
  std::vector<std::u16string> Names(std::u16string_view folder) const;

  std::unique_ptr<platform::File> Open(std::u16string_view path, platform::OpenMode mode,
                                       platform::Sharing sharing) override;
  std::unique_ptr<platform::File> OpenTemporary(std::u16string_view folder) override;
  std::optional<platform::FileState> State(std::u16string_view path) override;
  void Delete(std::u16string_view path) override;
  void ReplaceHeld(std::u16string_view from, std::u16string_view to,
                   std::unique_ptr<platform::File> held) override;
  void Move(std::u16string_view from, std::u16string_view to) override;
  void CopyAttributes(std::u16string_view from, std::u16string_view to) override;
  void CreateFolder(std::u16string_view path) override { folders_.emplace(path); }
  std::vector<std::u16string> List(std::u16string_view folder,
                                   std::u16string_view pattern) override;
  void FlushFolder(std::u16string_view) override {}
  std::u16string RealPath(std::u16string_view path) override { return std::u16string(path); }
  std::uint64_t FreeSpace(std::u16string_view folder) override;
  std::unique_ptr<platform::Hold> TryHold(std::u16string_view path) override;

 private:
  friend class VolumeFile;
  friend class VolumeHold;

  struct Shared {
    std::uint64_t used = 0;
    std::uint64_t most = 0;
    std::uint64_t lastNumber = 0;
    std::int64_t time = 0;
    std::set<std::u16string> holds;
  };
  struct Node {
    explicit Node(std::shared_ptr<Shared> on) : shared(std::move(on)) {}
    ~Node() { shared->used -= content.size(); }
    Node(const Node&) = delete;
    Node& operator=(const Node&) = delete;

    std::shared_ptr<Shared> shared;
    std::string content;
    std::uint64_t number = 0;
    std::int64_t modified = 0;
    bool isPrivate = false;
    int readers = 0;
    bool isExclusive = false;
  };
  using NodePointer = std::shared_ptr<Node>;

  NodePointer Make(bool isPrivate);
  const NodePointer& Existing(std::u16string_view path) const;
  void Grow(Node& node, std::uint64_t size, std::u16string_view path);

  std::shared_ptr<Shared> shared_ = std::make_shared<Shared>();
  std::map<std::u16string, NodePointer, std::less<>> names_;
  std::set<std::u16string, std::less<>> folders_;
};

}  // namespace zimbrat::tests
