#pragma once
#include <string>
#include <string_view>
#include <vector>

namespace tervale {

enum class Buttons { Ok, YesNo, YesNoCancel, RetryCancel, OkCancel };
enum class Answer { Ok, Yes, No, Cancel, Retry };

// Messages and questions of the calculations go through an interface the caller supplies:
// the desktop program shows message boxes, the command line prints and takes the default,
// tests record.
class UserDialogs {
 public:
  virtual ~UserDialogs() = default;
  virtual void Message(std::string_view text) = 0;
  virtual Answer Ask(std::string_view text, Buttons buttons) = 0;
};

// The answer a caller without a person in front of it gives.
Answer DefaultAnswer(Buttons buttons);

// Keeps every message and question; answers with a queue of prepared answers, then defaults.
class RecordingDialogs : public UserDialogs {
 public:
  void Message(std::string_view text) override { messages.emplace_back(text); }
  Answer Ask(std::string_view text, Buttons buttons) override;

  std::vector<std::string> messages;   // messages and questions, in order
  std::vector<Answer> preparedAnswers;  // consumed front first
};

}  // namespace tervale
