#include "jet/file/pager.h"

#include <algorithm>
#include <unordered_map>
#include <utility>

#include "jet/file/errors.h"
#include "jet/file/rc4.h"

namespace zimbrat::jet {

namespace {
constexpr std::size_t kCachePages = 4096;       // 16 MiB
constexpr std::size_t kSpareImages = 64;
constexpr std::size_t kPagesAtOnce = 16;        // that one call writes
constexpr std::size_t kImagesInMemory = 2048;   // 8 MiB; further ones go to a temporary file
// Between pulses: so many accesses to cached pages, or fewer that took longer.
constexpr std::uint32_t kPulseEffort = 16384;
constexpr std::uint32_t kEffortOfReading = kPulseEffort / 64;
}  // namespace

// Former contents of a page: in memory or at a place of the undo file.
struct Pager::Image {
  std::unique_ptr<std::array<std::byte, kPageSize>> bytes;
  std::uint64_t offset = 0;
};

struct Pager::Savepoint {
  std::uint64_t id = 0;
  PageNumber pageCount = 0;
  std::uint64_t undoStart = 0;  // of the undo file, when it began
  std::unordered_map<PageNumber, Image> images;
};

// Images that are no longer needed, with their memory.
struct Pager::SpareImages {
  std::vector<std::unordered_map<PageNumber, Image>::node_type> nodes;

  SpareImages() { nodes.reserve(kSpareImages); }
  void Add(std::unordered_map<PageNumber, Image>::node_type node) noexcept {
    if (nodes.size() < kSpareImages) nodes.push_back(std::move(node));
  }
};

PageRef::PageRef(Pager& pager, CachedPage& page) : pager_(&pager), page_(&page) { ++page.pins; }

PageRef::PageRef(PageRef&& other) noexcept
    : pager_(std::exchange(other.pager_, nullptr)), page_(std::exchange(other.page_, nullptr)) {}

PageRef& PageRef::operator=(PageRef&& other) noexcept {
  if (this != &other) {
    Release();
    pager_ = std::exchange(other.pager_, nullptr);
    page_ = std::exchange(other.page_, nullptr);
  }
  return *this;
}

PageRef::~PageRef() { Release(); }

void PageRef::Release() {
  if (page_) --page_->pins;
  page_ = nullptr;
}

Bytes PageRef::Change() {
  pager_->KeepImage(*page_);
  page_->dirty = true;
  return page_->bytes;
}

Pager::Pager(platform::Files& files, std::unique_ptr<platform::File> file, std::u16string path,
             std::uint32_t key)
    : files_(files), file_(std::move(file)), path_(std::move(path)), key_(key),
      cache_(kCachePages), spareImages_(std::make_unique<SpareImages>()), coded_(kPagesAtOnce * kPageSize) {
  const std::uint64_t pages = (file_->Size() + kPageSize - 1) / kPageSize;
  if (pages > kMaxPages) Raise(platform::kErrDatabaseFull);
  pageCount_ = writtenCount_ = static_cast<PageNumber>(pages);
}

Pager::~Pager() = default;

void Pager::Require(PageNumber page) const {
  if (broken_) Raise(platform::kErrDiskIo);
  if (page >= pageCount_) RaiseDamagedPage(page, u"leży poza plikiem");
}

PageRef Pager::Get(PageNumber page) {
  GivePulse();
  Require(page);
  if (page == 0) RaiseDamagedPage(page, u"nie jest stroną danych");
  return PageRef(*this, Load(page, true));
}

PageRef Pager::GetHeader() {
  GivePulse();
  Require(0);
  return PageRef(*this, Load(0, true));
}

PageRef Pager::GetZeroed(PageNumber page) {
  GivePulse();
  if (page == pageCount_) {
    if (page >= kMaxPages) Raise(platform::kErrDatabaseFull);
    ++pageCount_;
  }
  Require(page);
  // A page whose contents a savepoint must keep has to be read first.
  const bool kept = !savepoints_.empty() && page < savepoints_.back()->pageCount;
  PageRef ref(*this, Load(page, kept && page < writtenCount_));
  const Bytes bytes = ref.Change();
  std::fill(bytes.begin(), bytes.end(), std::byte{0});
  return ref;
}

// Whoever is pulsed may throw: not while something is half done, and never while changes are undone.
void Pager::GivePulse() {
  if (effort_ < kPulseEffort) return;
  effort_ = 0;
  if (pulse) pulse();
}

CachedPage& Pager::Load(PageNumber number, bool read) {
  ++effort_;
  if (CachedPage* const found = cache_.Find(number)) return *found;
  MakeRoom();
  CachedPage& page = cache_.Add(number);
  effort_ += kEffortOfReading;
  try {
    std::size_t have = 0;
    if (read && number < writtenCount_) have = file_->ReadAt(std::uint64_t{number} * kPageSize, page.bytes);
    std::fill(page.bytes.begin() + static_cast<std::ptrdiff_t>(have), page.bytes.end(), std::byte{0});
    if (have != 0) Code(number, page.bytes);
  } catch (...) {
    cache_.Remove(page);
    throw;
  }
  return page;
}

// A page that was not used lately and is not pinned leaves the cache.
void Pager::MakeRoom() {
  if (!cache_.IsFull()) return;
  CachedPage* const victim = cache_.ChooseVictim();
  if (!victim) return;
  if (victim->dirty) WriteOut(*victim);
  cache_.Remove(*victim);
}

void Pager::WriteOut(CachedPage& page) {
  CachedPage* const one = &page;
  WriteRun({&one, 1});
}

// Pages that follow one another, in one call.
void Pager::WriteRun(std::span<CachedPage* const> run) {
  const PageNumber first = run.front()->number;
  ReserveUpTo(first);
  for (std::size_t i = 0; i < run.size(); ++i) {
    std::copy(run[i]->bytes.begin(), run[i]->bytes.end(), coded_.begin() + static_cast<std::ptrdiff_t>(i * kPageSize));
  }
  const std::size_t plain = first == 0 ? kPageSize : 0;  // the header
  CodePages(key_, first == 0 ? 1 : first, Bytes(coded_).subspan(plain, run.size() * kPageSize - plain));
  file_->WriteAt(std::uint64_t{first} * kPageSize, ConstBytes(coded_).first(run.size() * kPageSize));
  writtenCount_ = std::max(writtenCount_, static_cast<PageNumber>(first + run.size()));
  for (CachedPage* page : run) page->dirty = false;
}

void Pager::Code(PageNumber page, Bytes bytes) const {
  if (key_ != 0 && page != 0) Rc4(key_ ^ page, bytes);
}

void Pager::Flush() {
  if (broken_) Raise(platform::kErrDiskIo);
  std::vector<CachedPage*> dirty;
  cache_.ForEach([&](CachedPage& page) {
    if (page.dirty) dirty.push_back(&page);
  });
  std::sort(dirty.begin(), dirty.end(),
            [](const CachedPage* a, const CachedPage* b) { return a->number < b->number; });
  for (std::size_t from = 0, to = 0; from < dirty.size(); from = to) {
    to = from + 1;
    while (to < dirty.size() && to - from < kPagesAtOnce && dirty[to]->number == dirty[to - 1]->number + 1) ++to;
    WriteRun(std::span<CachedPage* const>(dirty).subspan(from, to - from));
  }
  // Pages of an undone savepoint, also those of which only a part found room.
  if (file_->Size() > std::uint64_t{pageCount_} * kPageSize) file_->Resize(std::uint64_t{pageCount_} * kPageSize);
  writtenCount_ = std::min(writtenCount_, pageCount_);
}

std::unique_ptr<platform::File> Pager::OpenTemporary() const {
  return files_.OpenTemporary(platform::FolderOfPath(path_));
}

void Pager::Begin() {
  auto savepoint = spare_ ? std::move(spare_) : std::make_unique<Savepoint>();
  savepoint->id = ++lastSavepoint_;
  savepoint->pageCount = pageCount_;
  savepoint->undoStart = undoSize_;
  savepoints_.push_back(std::move(savepoint));
}

void Pager::KeepImage(CachedPage& page) {
  if (savepoints_.empty()) return;
  Savepoint& top = *savepoints_.back();
  if (page.keptBy == top.id || page.number >= top.pageCount) return;
  if (!top.images.contains(page.number)) {
    std::unordered_map<PageNumber, Image>::node_type node;
    if (spareImages_->nodes.empty()) {
      std::unordered_map<PageNumber, Image> fresh;
      node = fresh.extract(fresh.emplace(page.number, Image()).first);
    } else {
      node = std::move(spareImages_->nodes.back());
      spareImages_->nodes.pop_back();
    }
    node.key() = page.number;
    StoreImage(page, node.mapped());
    top.images.insert(std::move(node));
  }
  page.keptBy = top.id;
}

void Pager::StoreImage(const CachedPage& page, Image& image) {
  if (imagesInMemory_ < kImagesInMemory) {
    if (!image.bytes) image.bytes = std::make_unique<std::array<std::byte, kPageSize>>();
    *image.bytes = page.bytes;
    ++imagesInMemory_;
    return;
  }
  image.bytes.reset();
  if (!undo_) undo_ = OpenTemporary();
  std::array<std::byte, kPageSize> coded = page.bytes;
  Code(page.number, coded);  // an encoded database leaves no plain page behind, not even for a moment
  image.offset = undoSize_;
  undo_->WriteAt(undoSize_, coded);
  undoSize_ += kPageSize;
}

// What its making cost is saved for the next one.
void Pager::Discard(std::unique_ptr<Savepoint> savepoint) {
  auto& images = savepoint->images;
  while (!images.empty() && spareImages_->nodes.size() < kSpareImages) spareImages_->Add(images.extract(images.begin()));
  if (images.bucket_count() > 4 * kSpareImages) return;
  images.clear();
  spare_ = std::move(savepoint);
}

// Room for the pages below `end`, which will be written whole later: a page behind the file's end would leave a hole,
// for which there may be no room when it is to be filled.
void Pager::ReserveUpTo(PageNumber end) {
  if (writtenCount_ >= end) return;
  const std::vector<std::byte> zeros(std::min<std::size_t>(end - writtenCount_, kPagesAtOnce) * kPageSize);
  while (writtenCount_ < end) {
    const std::size_t count = std::min<std::size_t>(end - writtenCount_, kPagesAtOnce);
    file_->WriteAt(std::uint64_t{writtenCount_} * kPageSize, ConstBytes(zeros).first(count * kPageSize));
    writtenCount_ += static_cast<PageNumber>(count);
  }
}

// What may fail comes first: with half of the images in one savepoint and half in the other neither could
// be undone. Once there is room for the new pages all are rewritten in place, so that a full disk is noticed while
// it can be undone.
void Pager::Commit() {
  if (savepoints_.size() == 1) ReserveUpTo(pageCount_);
  if (savepoints_.size() > 1) {
    auto& images = savepoints_[savepoints_.size() - 2]->images;
    const std::size_t count = images.size() + savepoints_.back()->images.size();
    if (count >= images.bucket_count()) images.reserve(2 * count);
  }
  std::unique_ptr<Savepoint> done = std::move(savepoints_.back());
  savepoints_.pop_back();
  if (savepoints_.empty()) {
    imagesInMemory_ = 0;
    undoSize_ = 0;
    return Discard(std::move(done));
  }
  Savepoint& outer = *savepoints_.back();
  bool fileKept = false;
  for (auto it = done->images.begin(); it != done->images.end();) {
    auto node = done->images.extract(it++);
    const bool isInMemory = node.mapped().bytes != nullptr;
    const bool kept = node.key() < outer.pageCount && !outer.images.contains(node.key());
    fileKept = fileKept || (kept && !isInMemory);
    if (!kept && isInMemory) --imagesInMemory_;
    if (kept) {
      outer.images.insert(std::move(node));
    } else {
      spareImages_->Add(std::move(node));
    }
  }
  // Without this a transaction of many rows would grow the file with each change of the same pages.
  if (!fileKept) undoSize_ = done->undoStart;
  Discard(std::move(done));
}

void Pager::Rollback() noexcept {
  const std::unique_ptr<Savepoint> undone = std::move(savepoints_.back());
  savepoints_.pop_back();
  ++generation_;
  try {
    Restore(*undone);
  } catch (const std::exception&) {
    broken_ = true;
  }
  undoSize_ = undone->undoStart;
  if (savepoints_.empty()) imagesInMemory_ = 0;
}

void Pager::Restore(const Savepoint& savepoint) {
  DropPagesFrom(savepoint.pageCount);
  pageCount_ = savepoint.pageCount;
  for (const auto& [page, image] : savepoint.images) {
    RestoreImage(page, image);
    if (image.bytes) --imagesInMemory_;
  }
}

void Pager::DropPagesFrom(PageNumber first) {
  cache_.ForEach([&](CachedPage& page) {
    if (page.number < first) return;
    page.dirty = false;
    if (page.pins == 0) cache_.Remove(page);
  });
}

void Pager::RestoreImage(PageNumber number, const Image& image) {
  CachedPage& page = Load(number, false);
  if (image.bytes) {
    page.bytes = *image.bytes;
  } else {
    if (undo_->ReadAt(image.offset, page.bytes) != kPageSize) Raise(platform::kErrDiskIo);
    Code(number, page.bytes);
  }
  page.dirty = true;
  page.keptBy = 0;
}

}  // namespace zimbrat::jet
