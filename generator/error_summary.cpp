#include "generator/ModGeneruj.h"

#include "suite/ModPrgFun.h"
#include "platform/text.h"

namespace zimbrat::generator {

std::u16string OpisBleduGenerowania(const ProgramState& state) {
  const suite::KontekstBledu& context = state.context;
  std::u16string text;
  const auto line = [&text](std::u16string_view label, std::u16string_view value = {}) {
    text.append(label).append(value).append(suite::kCrLf);
  };
  line(state.task == suite::Task::Sprawdz ? u"Wystąpił bląd podczas sprawdzania bazy danych. Baza "
                                            u"nie może zostać naprawiona."  // sic
                                          : u"Wystąpił bląd podczas generowania bazy danych. Baza "
                                            u"nie została utworzona.");  // sic
  if (!context.Detail.empty() || context.Number != 0) line(u"Szczegóły:");
  if (context.Number != 0) {
    line(u"Błąd nr ", platform::DecimalText(context.Number) + u"; (" + context.Description + u")");
  }
  if (!context.Detail.empty()) {
    line(context.Detail);
    line(u"Tablica: ", context.Table);
    line(u"Indeks: ", context.Index);
    line(u"Relacja: ", context.Relation);
    line(u"Pole: ", context.Field);
    line(u"Linia: ", context.Line);
  }
  return text;
}

}  // namespace zimbrat::generator
