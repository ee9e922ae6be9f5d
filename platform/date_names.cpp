#include <iterator>

#include "platform/dates.h"

namespace zimbrat::platform {
namespace {

struct Names {
  std::u16string_view full, brief, genitive;

  std::u16string_view In(NameForm form) const {
    return form == NameForm::Full ? full : form == NameForm::Short ? brief : genitive;
  }
};

constexpr Names kMonths[] = {
    {u"styczeń", u"sty", u"stycznia"},      {u"luty", u"lut", u"lutego"},
    {u"marzec", u"mar", u"marca"},          {u"kwiecień", u"kwi", u"kwietnia"},
    {u"maj", u"maj", u"maja"},              {u"czerwiec", u"cze", u"czerwca"},
    {u"lipiec", u"lip", u"lipca"},          {u"sierpień", u"sie", u"sierpnia"},
    {u"wrzesień", u"wrz", u"września"},     {u"październik", u"paź", u"października"},
    {u"listopad", u"lis", u"listopada"},    {u"grudzień", u"gru", u"grudnia"},
};
static_assert(std::size(kMonths) == 12);

constexpr Names kDays[] = {
    {u"niedziela", u"N", u"niedzieli"}, {u"poniedziałek", u"Pn", u"poniedziałku"},
    {u"wtorek", u"Wt", u"wtorku"},      {u"środa", u"Śr", u"środy"},
    {u"czwartek", u"Cz", u"czwartku"},  {u"piątek", u"Pt", u"piątku"},
    {u"sobota", u"So", u"soboty"},
};

}  // namespace

std::u16string_view MonthName(int month, NameForm form) {
  return kMonths[static_cast<std::size_t>(month - 1)].In(form);
}

std::u16string_view DayName(int dayOfWeek, NameForm form) {
  return kDays[static_cast<std::size_t>(dayOfWeek - 1)].In(form);
}

}  // namespace zimbrat::platform
