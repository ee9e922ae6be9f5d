// The pages of one database file: a bounded cache over the file, encoding and decoding on the way, and
// savepoints that can be undone.
//
// A change is made to a pinned page (PageRef::Change), whose former contents the innermost savepoint
// keeps. Rollback puts them back; Commit hands them to the savepoint around it. Changed pages reach the
// file when the cache needs room and at Flush; room for new ones is taken when the outermost savepoint is committed.
//
// Errors: 3049 for a page number outside the file, 3036 above 2 GB, and those of the file layer as they
// come (the engine's face turns them into DAO's numbers).
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "jet/file/bytes.h"
#include "jet/file/format.h"
#include "jet/file/page_cache.h"
#include "platform/files.h"

namespace zimbrat::jet {

class Pager;

// A pinned page: its bytes stay where they are as long as this lives.
class PageRef {
 public:
  PageRef() = default;
  PageRef(Pager& pager, CachedPage& page);
  PageRef(PageRef&& other) noexcept;
  PageRef& operator=(PageRef&& other) noexcept;
  ~PageRef();

  PageNumber Number() const { return page_->number; }
  ConstBytes Read() const { return page_->bytes; }
  // The bytes for writing; the page's former contents are kept for the savepoint.
  Bytes Change();

 private:
  void Release();
  Pager* pager_ = nullptr;
  CachedPage* page_ = nullptr;
};

// The free pages of the file (the global usage map), as far as those who take and free pages need them.
class PageAllocator {
 public:
  virtual ~PageAllocator() = default;
  // A zeroed page, marked as in use.
  virtual PageNumber Take() = 0;
  virtual void Free(PageNumber page) = 0;
};

class Pager {
 public:
  // The file is read and written as it is from now on. `key` 0 means plain pages.
  Pager(platform::Files& files, std::unique_ptr<platform::File> file, std::u16string path,
        std::uint32_t key);
  ~Pager();
  Pager(const Pager&) = delete;
  Pager& operator=(const Pager&) = delete;

  const std::u16string& Path() const { return path_; }
  PageNumber PageCount() const { return pageCount_; }

  // Page 1 and above, decoded. Error 3049 outside the file.
  PageRef Get(PageNumber page);
  // The same, but the caller will write all of it: it comes zeroed and nothing is read. Extends the file
  // by one page when `page` is the page count.
  PageRef GetZeroed(PageNumber page);
  // Page 0, not encoded, still masked.
  PageRef GetHeader();

  void Begin();
  // When the outermost one fails (no room for the new pages), the savepoint is still there.
  void Commit();
  // Undoes all that was changed since the matching Begin. When even that fails (the disk), every later
  // call raises 3043: the file is worthless then.
  void Rollback() noexcept;
  std::size_t Depth() const { return savepoints_.size(); }
  // Grows with every Rollback: what was derived from pages before is stale when it differs.
  std::uint64_t Generation() const { return generation_; }

  // For what is set aside during long work, beside the database.
  std::unique_ptr<platform::File> OpenTemporary() const;
  // A page, or a block of something set aside, as this database encodes it; its own inverse.
  void Code(PageNumber page, Bytes bytes) const;

  // Changed pages to the file (not to the device).
  void Flush();

  // Called from time to time during long work, also while all its pages are in the cache.
  std::function<void()> pulse;

 private:
  friend class PageRef;
  struct Image;
  struct Savepoint;
  struct SpareImages;

  void GivePulse();
  CachedPage& Load(PageNumber page, bool read);
  void MakeRoom();
  void WriteOut(CachedPage& page);
  void WriteRun(std::span<CachedPage* const> run);
  void ReserveUpTo(PageNumber end);
  void KeepImage(CachedPage& page);
  void StoreImage(const CachedPage& page, Image& image);
  void Discard(std::unique_ptr<Savepoint> savepoint);
  void RestoreImage(PageNumber page, const Image& image);
  void Restore(const Savepoint& savepoint);
  void DropPagesFrom(PageNumber first);
  void Require(PageNumber page) const;

  platform::Files& files_;
  std::unique_ptr<platform::File> file_;
  std::unique_ptr<platform::File> undo_;  // images that no longer fit into memory
  std::uint64_t undoSize_ = 0;
  std::uint64_t lastSavepoint_ = 0;
  bool broken_ = false;
  std::size_t imagesInMemory_ = 0;
  std::u16string path_;
  std::uint32_t key_;
  PageNumber pageCount_ = 0;
  PageNumber writtenCount_ = 0;  // pages that the file on disk has
  std::uint64_t generation_ = 0;
  std::uint32_t effort_ = 0;  // since the last pulse
  PageCache cache_;
  std::vector<std::unique_ptr<Savepoint>> savepoints_;
  std::unique_ptr<Savepoint> spare_;  // an empty one: each row that is stored needs one
  std::unique_ptr<SpareImages> spareImages_;
  std::vector<std::byte> coded_;  // pages on their way to the file
};

// Savepoint as a scope: rolled back unless committed.
class Atomic {
 public:
  explicit Atomic(Pager& pager) : pager_(&pager) { pager.Begin(); }
  ~Atomic() {
    if (pager_) pager_->Rollback();
  }
  Atomic(const Atomic&) = delete;
  Atomic& operator=(const Atomic&) = delete;
  void Commit() {
    pager_->Commit();
    pager_ = nullptr;
  }

 private:
  Pager* pager_;
};

}  // namespace zimbrat::jet
