#include "console/explanations.h"

#include "errors/error_texts.h"
#include "platform/text.h"

namespace zimbrat::console {

namespace {

std::u16string NumberText(std::int32_t number) { return u"Błąd nr " + platform::DecimalText(number) + u"; ("; }

platform::RunTimeError ErrorIn(const suite::KontekstBledu& context) {
  return {context.Number, context.Source, context.Description};
}

}  // namespace

std::u16string ErrorText(const suite::ProgramState& state, const platform::RunTimeError& error) {
  std::u16string text = NumberText(error.Number()) + error.Description() + u")";
  const std::u16string explanation = errors::FindErrorText(state, error);
  return explanation.empty() ? text : text.append(suite::kCrLf) + explanation;
}

std::u16string Explanation(const suite::ProgramState& state) {
  if (state.openingError) return errors::FindErrorText(state, *state.openingError);
  return state.context.Number == 0 ? std::u16string() : errors::FindErrorText(state, ErrorIn(state.context));
}

std::u16string ReasonBehind(const suite::ProgramState& state, std::u16string_view said) {
  const std::int32_t number = state.context.Number;
  const bool isSaid = number == 0 || state.openingError || platform::Contains(said, NumberText(number));
  return isSaid ? Explanation(state) : ErrorText(state, ErrorIn(state.context));
}

std::u16string NotComparedText(const suite::ProgramState& state, std::u16string_view database,
                               const suite::Comparison& comparison) {
  std::u16string text = u"Nie można porównać struktur z bazą: " + std::u16string(database);
  if (!comparison.stoppedAt.empty()) text += u", plik struktury: " + comparison.stoppedAt;
  return comparison.error ? text + u". " + ErrorText(state, *comparison.error) : text;
}

}  // namespace zimbrat::console
