#include "report_mail.h"

#include "suite/ModPrgFun.h"
#include "suite/product.h"

namespace zimbrat::errors {

std::u16string ReportSubject() {
  std::u16string text = u"Błąd programu ";
  return text.append(suite::ProductTitle()).append(u" wersja ").append(suite::ProductVersion());
}

std::u16string ReportText(const ErrorFacts& facts) {
  const std::u16string end(suite::kCrLf);
  return u"Proszę nie kasować poniższego tekstu" + end + u"-----------------------------------------" +
         end + u"Numer: " + facts.number + end + u"Źródło: " + facts.source + end + u"Opis1: " +
         facts.explanation + end + u"Opis2: " + facts.description;
}

std::u16string ReportTextToComplete(const ErrorFacts& facts) {
  const std::u16string end(suite::kCrLf);
  return u"(>tutaj wpisz okoliczności wystąpienia błędu<)" + end + end + end + ReportText(facts) + end;
}

std::u16string ReportLink(const ErrorFacts& facts) {
  return u"mailto:" + std::u16string(suite::SupportAddress()) + u"?subject=" + ReportSubject() +
         u"&Body=(Nie kasować) :  " + u"   Numer: " + facts.number + u"   Źródło: " + facts.source +
         u"   Opis1: " + facts.explanation + u"   Opis2: " + facts.description;
}

}  // namespace zimbrat::errors
