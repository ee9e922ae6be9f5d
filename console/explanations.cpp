#include "console/explanations.h"

#include "errors/error_texts.h"
#include "suite/ModPrgFun.h"
#include "platform/text.h"

namespace zimbrat::console {

std::u16string ErrorText(const suite::ProgramState& state, const platform::RunTimeError& error) {
  std::u16string text = u"Błąd nr " + platform::DecimalText(error.Number()) + u"; (" + error.Description() + u")";
  const std::u16string explanation = Explanation(state, error);
  return explanation.empty() ? text : text.append(suite::kCrLf) + explanation;
}

std::u16string Explanation(const suite::ProgramState& state, const platform::RunTimeError& error) {
  return errors::FindErrorText(state, errors::SourceLabel(error.Source()), error.Number());
}

std::u16string Explanation(const suite::ProgramState& state) {
  if (state.openingError) return Explanation(state, *state.openingError);
  const suite::KontekstBledu& context = state.context;
  if (context.Number == 0) return {};
  return Explanation(state, {context.Number, context.Source, context.Description});
}

}  // namespace zimbrat::console
