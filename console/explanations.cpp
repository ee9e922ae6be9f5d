#include "console/explanations.h"

#include "errors/error_texts.h"
#include "platform/text.h"

namespace zimbrat::console {

std::u16string ErrorText(const suite::ProgramState& state, const platform::RunTimeError& error) {
  std::u16string text = u"Błąd nr " + platform::DecimalText(error.Number()) + u"; (" + error.Description() + u")";
  const std::u16string explanation = errors::FindErrorText(state, error);
  return explanation.empty() ? text : text.append(suite::kCrLf) + explanation;
}

std::u16string Explanation(const suite::ProgramState& state) {
  if (state.openingError) return errors::FindErrorText(state, *state.openingError);
  const suite::KontekstBledu& context = state.context;
  if (context.Number == 0) return {};
  return errors::FindErrorText(state, {context.Number, context.Source, context.Description});
}

std::u16string NotComparedText(const suite::ProgramState& state, std::u16string_view database,
                               const suite::Comparison& comparison) {
  std::u16string text = u"Nie można porównać struktur z bazą: " + std::u16string(database);
  if (!comparison.stoppedAt.empty()) text += u", plik struktury: " + comparison.stoppedAt;
  return comparison.error ? text + u". " + ErrorText(state, *comparison.error) : text;
}

}  // namespace zimbrat::console
