#include "checking.h"

#include <algorithm>
#include <utility>

#include "row_page.h"

namespace zimbrat::jet::check {

namespace {

std::u16string OwnerText(const PageOwner& owner) {
  switch (owner.use) {
    case PageUse::Fixed:
      return u"stałą stroną pliku";
    case PageUse::Definition:
      return TextOf(u"definicją tabeli ze strony ", owner.table);
    case PageUse::Data:
      return TextOf(u"stroną danych tabeli ze strony ", owner.table);
    case PageUse::LongValues:
      return TextOf(u"stroną długich wartości tabeli ze strony ", owner.table);
    case PageUse::Index:
      return TextOf(u"stroną indeksu ", owner.part, u" tabeli ze strony ", owner.table);
    case PageUse::MapRows:
    case PageUse::MapBits:
      return u"stroną map";
    case PageUse::None:
      break;
  }
  return u"wolna";
}

}  // namespace

std::vector<Fault> Report::Take() {
  if (IsFull()) {
    faults_.push_back({u"plik", TextOf(u"sprawdzanie przerwano po ", limit_, u" błędach"), true, true});
  }
  return std::move(faults_);
}

void Checking::NameUnusedRows(const std::u16string& place, PageNumber number) {
  const PageView page = pages.Read(number);
  for (std::size_t slot = 0; slot < std::min(SlotCount(*page), kMaxRowSlots); ++slot) {
    const RowPointer row{number, static_cast<std::uint8_t>(slot)};
    if (SlotFlags(*page, slot) != 0 || heldRows.Contains(row)) continue;
    Unused(TextOf(place, u", strona ", number), TextOf(u"wiersza ", slot, u" nic nie używa"));
  }
}

bool Checking::Claim(const std::u16string& place, PageNumber page, const PageOwner& owner) {
  if (page == 0 || !pages.Has(page)) {
    Loss(place, TextOf(u"wskazuje stronę ", page, u", której nie ma w pliku"));
    return false;
  }
  if (!census.Claim(page, owner)) {
    PageLoss(place, page, TextOf(u"strona jest już ", OwnerText(census.OwnerOf(page))));
    return false;
  }
  if (census.IsFree(page))
    PageError(place, page, u"strona jest w użyciu, a mapa podaje ją jako wolną");
  return true;
}

}  // namespace zimbrat::jet::check
