#pragma once
#include <string_view>

namespace tervale {

// A text in both languages. LanguageFlag 0 picks Japanese, 1 English.
struct BiText {
  std::string_view en;
  std::string_view ja;
  std::string_view Pick(int languageFlag) const { return languageFlag == 1 ? en : ja; }
};

// A text that exists in one language only is shown as it stands in both.
constexpr BiText Same(std::string_view text) { return BiText{text, text}; }

}  // namespace tervale
