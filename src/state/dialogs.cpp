#include "state/dialogs.h"

namespace tervale {

Answer DefaultAnswer(Buttons buttons) {
  switch (buttons) {
    case Buttons::Ok:
    case Buttons::OkCancel:
      return Answer::Ok;
    case Buttons::YesNo:
    case Buttons::YesNoCancel:
      return Answer::Yes;
    case Buttons::RetryCancel:
      return Answer::Retry;
  }
  return Answer::Ok;
}

Answer RecordingDialogs::Ask(std::string_view text, Buttons buttons) {
  messages.emplace_back(text);
  if (!preparedAnswers.empty()) {
    Answer a = preparedAnswers.front();
    preparedAnswers.erase(preparedAnswers.begin());
    return a;
  }
  return DefaultAnswer(buttons);
}

}  // namespace tervale
