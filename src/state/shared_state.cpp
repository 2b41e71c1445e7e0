#include "state/shared_state.h"

namespace tervale {

std::unique_ptr<SharedCalcState> MakeSharedCalcState() {
  auto s = std::make_unique<SharedCalcState>();
  ResetComponentsAndMatrices(*s);
  return s;
}

void ShowMessage(SharedCalcState& s, std::string_view text) {
  s.MessageText = std::string(text);
  if (s.Dialogs) s.Dialogs->Message(text);
}

Answer AskUser(SharedCalcState& s, std::string_view text, Buttons buttons) {
  s.MessageText = std::string(text);
  if (s.Dialogs) return s.Dialogs->Ask(text, buttons);
  return DefaultAnswer(buttons);
}

void ResetComponentsAndMatrices(SharedCalcState& s) {
  s.Comp = ComponentTable{};
  s.Bin = BinaryParameterMatrix{};
  for (int i = 0; i <= kMaxComponents; ++i) {
    s.Bin.WilsonLambda[i][i] = 1.0;
    s.Bin.KijMatrix[i][i] = 1.0;
  }
  s.Unit = UnitSelection{};
  s.KValue = {};
  s.Gamma = {};
}

}  // namespace tervale
