#pragma once
// Small helpers between the state's UTF-8 texts and Qt strings.
#include <QLoggingCategory>
#include <QString>
#include <string>
#include <string_view>

#include "state/bitext.h"
#include "state/shared_state.h"

namespace tervale::screens {

// Timings of the screens (QT_LOGGING_RULES="tervale.timing=true" shows them).
Q_DECLARE_LOGGING_CATEGORY(lcTiming)

inline QString Q(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string S(const QString& text) {
  return text.toStdString();
}
// The caption of a two-language pair in the language the state has chosen.
inline QString T(const SharedCalcState& s, const BiText& text) {
  return Q(text.Pick(s.LanguageFlag));
}
// A number in one of the program's display patterns (" ###0.000", "#0.#00000", ...).
QString Fmt(double value, std::string_view pattern);
// Lenient reading of a number field: what is no number counts as 0.
double ReadNumber(const QString& text);
// Lenient reading that tells whether the field held anything (empty fields take a default).
bool ReadNumber(const QString& text, double& value);

// Texts of the lists shared by the sub-forms and the main forms' summary labels.
QString TempUnitText(const SharedCalcState& s, int tempUnit);
QString PressUnitText(const SharedCalcState& s, int pressUnit);
QString HeatUnitText(const SharedCalcState& s, int heatUnit);
QString KValueMethodText(const SharedCalcState& s, int method);
QString EnthalpyMethodText(const SharedCalcState& s, int method);

inline constexpr BiText kTextOk{"OK", "ＯＫ"};
inline constexpr BiText kTextCancel{"Cancel", "キャンセル"};

}  // namespace tervale::screens
