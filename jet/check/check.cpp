// The order of a check: page 0, the map of free pages, MSysObjects, every table that it names, what
// the tables say of each other, and at last the pages that nobody named.
#include "jet/check/check.h"

#include <algorithm>
#include <array>

#include "catalogue_check.h"
#include "map_reader.h"
#include "table_check.h"
#include "jet/file/errors.h"
#include "jet/file/header.h"
#include "platform/dao_errors.h"

namespace zimbrat::jet {

using namespace check;

namespace {

constexpr std::array<std::uint8_t, 7> kFormatMark = {0x54, 0x06, 0, 0, '4', '.', '0'};
constexpr PageNumber kLeastPages = kRelationshipsPage + 1;

class FileCheck {
 public:
  FileCheck(platform::File& file, std::u16string_view path, const CheckOptions& options)
      : options_(options), check_(file, options), path_(path), catalogue_(check_) {}

  std::vector<Fault> Run();

 private:
  void CheckHeader();
  void CheckTables();
  void CheckSortOrder(const TableLayout& objects);
  void CheckTable(const CatalogueObject& object);
  void CheckUnclaimedPages();
  void NameUnusedMaps();
  bool IsLiveTable(PageNumber page) const;

  const CheckOptions& options_;
  Checking check_;
  std::u16string_view path_;
  FileHeader header_;
  CatalogueCheck catalogue_;
};

void FileCheck::CheckHeader() {
  const PageView page = check_.pages.Read(0);
  header_ = DecodeHeader(*page, path_);
  check_.pages.SetKey(header_.encodingKey);
  const std::u16string place = u"nagłówek";
  if (!check_.pages.HasWholePages())
    check_.Error(place, u"rozmiar pliku nie jest wielokrotnością strony");
  if (!std::equal(kFormatMark.begin(), kFormatMark.end(), page->begin() + kOffsetFormatMark,
                  [](std::uint8_t a, std::byte b) { return std::byte{a} == b; })) {
    check_.Error(place, u"brak oznaczenia formatu");
  }
  PageBytes plain = *page;
  ToggleHeaderMask(plain);
  const auto freePages = RowPointer::FromPacked(Get32(plain, kOffsetGlobalMap));
  const auto second = RowPointer::FromPacked(Get32(plain, kOffsetSecondMap));
  if (freePages != RowPointer{kGlobalMapPage, 0} || second != RowPointer{kGlobalMapPage, 1}) {
    check_.Error(place, u"mapy wolnych stron są wskazane w innym miejscu");
  }
  for (PageNumber i = 0; i < 4; ++i) {
    if (Get32(plain, kOffsetSystemTables + 4 * i) != kObjectsPage + i) {
      check_.Error(place, TextOf(u"tabela systemowa ", i, u" jest wskazana w innym miejscu"));
    }
  }
  check_.census.Claim(0, {PageUse::Fixed});
  ReadGlobalMaps(check_, {kGlobalMapPage, 0}, {kGlobalMapPage, 1});
  if (check_.census.IsFree(0) || check_.census.IsFree(kGlobalMapPage)) {
    check_.Error(place, u"stałe strony pliku są podane jako wolne");
  }
}

bool FileCheck::IsLiveTable(PageNumber page) const {
  return check_.pages.Has(page) &&
         check_.census.OwnerOf(page) == PageOwner{PageUse::Definition, page};
}

void FileCheck::CheckTable(const CatalogueObject& object) {
  const std::u16string place = TextOf(u"tabela „", object.name, u"”");
  const std::optional<TableLayout> table = ReadLayout(check_, place, object.id);
  if (!table) return;
  catalogue_.RequireColumns(*table);
  RowVisit visit;
  if (object.id == kAcesPage) {
    visit = [&](const RowParts& row) { catalogue_.AddPermission(*table, row); };
  } else if (object.id == kRelationshipsPage) {
    visit = [&](const RowParts& row) { catalogue_.AddRelationshipRow(*table, row); };
  }
  TableCheck(check_, *table).Run(visit);
  catalogue_.CheckRelations(*table);
}

// New texts get the order that the header tells; those of the catalogue were the first.
void FileCheck::CheckSortOrder(const TableLayout& objects) {
  const ColumnLayout* name = objects.FindColumn(u"Name");
  if (!name || !name->IsText()) return;
  if ((name->extra & 0xFFFF) == header_.language && name->extra >> 24 == header_.collationVersion) return;
  check_.report.Warning(u"nagłówek", u"porządek sortowania pliku jest inny niż porządek katalogu");
}

void FileCheck::CheckTables() {
  const std::optional<TableLayout> objects =
      ReadLayout(check_, u"tabela „MSysObjects”", kObjectsPage);
  if (!objects) return;
  CheckSortOrder(*objects);
  catalogue_.RequireColumns(*objects);
  TableCheck(check_, *objects).Run([&](const RowParts& row) {
    catalogue_.AddObject(*objects, row);
  });
  catalogue_.FinishObjects();
  for (PageNumber page = kObjectsPage; page <= kRelationshipsPage; ++page) {
    const auto& all = catalogue_.Objects();
    const bool isThere = std::any_of(all.begin(), all.end(), [&](const CatalogueObject& object) {
      return object.id == page && object.IsTable();
    });
    if (!isThere) check_.Loss(u"katalog", TextOf(u"brak tabeli systemowej ze strony ", page));
  }
  for (const CatalogueObject& object : catalogue_.Objects()) {
    if (check_.report.IsFull()) return;
    if (object.IsTable() && object.id != kObjectsPage) CheckTable(object);
  }
  catalogue_.CheckPermissions();
}

// Pages of vanished tables and long values that nothing uses are left behind in real files. A page
// that names a table which is there must be in one of its maps.
void FileCheck::CheckUnclaimedPages() {
  for (PageNumber page = 1; page < check_.pages.Count() && !check_.report.IsFull(); ++page) {
    if (check_.census.IsFree(page) || check_.census.OwnerOf(page).use != PageUse::None) continue;
    const PageView view = check_.pages.Read(page);
    if (std::ranges::all_of(*view, [](std::byte byte) { return byte == std::byte{0}; })) {
      check_.report.Warning(TextOf(u"strona ", page), u"strona jest pusta, a nie jest podana jako wolna");
      continue;
    }
    const std::uint8_t type = Get8(*view, 0);
    const bool hasOwner = type == kPageData || type == kPageIndexNode || type == kPageIndexLeaf;
    const PageNumber owner = Get32(*view, kOffsetOwner);
    if (!hasOwner || owner == 0 || !IsLiveTable(owner)) {
      check_.Unused(TextOf(u"strona ", page), u"strony nic nie używa, a nie jest wolna");
      continue;
    }
    const std::u16string text =
        TextOf(u"należy do tabeli ze strony ", owner, u", ale nie do jej map");
    if (type == kPageData) {
      check_.Loss(TextOf(u"strona ", page), text);
    } else {
      check_.Error(TextOf(u"strona ", page), text);
    }
  }
}

void FileCheck::NameUnusedMaps() {
  for (PageNumber page = 1; page < check_.pages.Count(); ++page) {
    if (check_.census.OwnerOf(page).use != PageUse::MapRows) continue;
    check_.NameUnusedRows(u"mapy stron", page);
  }
}

std::vector<Fault> FileCheck::Run() {
  if (check_.pages.Count() == 0) Raise(platform::kErrUnrecognizedFormat, path_);
  CheckHeader();
  if (check_.pages.Count() < kLeastPages) {
    check_.Loss(u"plik", TextOf(u"plik ma tylko ", check_.pages.Count(), u" stron"));
  } else {
    CheckTables();
    CheckUnclaimedPages();
    if (options_.reportUnused) NameUnusedMaps();
  }
  return check_.report.Take();
}

}  // namespace

std::vector<Fault> CheckFile(platform::Files& files, std::u16string_view path,
                             const CheckOptions& options) {
  const std::unique_ptr<platform::File> file =
      files.Open(path, platform::OpenMode::Read, platform::Sharing::All);
  return CheckFile(*file, path, options);
}

std::vector<Fault> CheckFile(platform::File& file, std::u16string_view path,
                             const CheckOptions& options) {
  try {
    return FileCheck(file, path, options).Run();
  } catch (const std::exception&) {
    dao::RethrowAs(dao::kSourceDatabase);
  }
}

bool HasErrors(const std::vector<Fault>& faults) {
  return std::any_of(faults.begin(), faults.end(),
                     [](const Fault& fault) { return fault.isError; });
}

}  // namespace zimbrat::jet
