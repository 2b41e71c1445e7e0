#include "screens/screen_text.h"

#include "io/display_format.h"
#include "io/field_reader.h"

#include <cmath>

namespace tervale::screens {

Q_LOGGING_CATEGORY(lcTiming, "tervale.timing", QtWarningMsg)
namespace {

constexpr BiText kTempUnits[] = {{"C", "℃"}, {"K", "゜K"}, {"F", "゜F"}};
constexpr BiText kPressUnits[] = {Same("MPa"),   Same("KPa"),     Same("mmHg"),
                                  Same("mmH2O"), Same("Kgf/cm2"), Same("PSIA")};
constexpr BiText kHeatUnits[] = {Same("J"), Same("Kcal")};
constexpr BiText kKValueMethods[] = {{"1.Ideal(Antoine)", "1.理想系(Antoine)"},
                                     Same("2.Antoine+Wilson"),
                                     Same("3.Antoine+N.R.T.L"),
                                     Same("4.S-R-K"),
                                     Same("5.P-R")};
constexpr BiText kEnthalpyMethods[] = {{"0.not Heatr Balance", "0.エンタルピー計算なし"},
                                       {"1.Equation(H=A+B*t+C*t^2)", "1.温度多項式(H=A+B*t+C*t^2)"},
                                       Same("2.Ｓ－Ｒ－Ｋ"),
                                       Same("3.Ｐ－Ｒ")};

template <std::size_t N>
QString ListText(const SharedCalcState& s, const BiText (&list)[N], int index) {
  if (index < 0 || index >= static_cast<int>(N)) return QString();
  return T(s, list[index]);
}

}  // namespace

QString Fmt(double value, std::string_view pattern) {
  return Q(io::FormatNumber(value, pattern));
}

bool ReadNumber(const QString& text, double& value) {
  const std::string t = S(text.trimmed());
  value = 0;
  if (t.empty()) return false;
  double v = 0;
  if (io::ParseNumber(t, v) && std::isfinite(v)) value = v;
  return true;
}

double ReadNumber(const QString& text) {
  double v = 0;
  ReadNumber(text, v);
  return v;
}

QString TempUnitText(const SharedCalcState& s, int u) {
  return ListText(s, kTempUnits, u - 1);
}
QString PressUnitText(const SharedCalcState& s, int u) {
  return ListText(s, kPressUnits, u - 1);
}
QString HeatUnitText(const SharedCalcState& s, int u) {
  return ListText(s, kHeatUnits, u - 1);
}
QString KValueMethodText(const SharedCalcState& s, int m) {
  return ListText(s, kKValueMethods, m - 1);
}
QString EnthalpyMethodText(const SharedCalcState& s, int m) {
  return ListText(s, kEnthalpyMethods, m);
}

}  // namespace tervale::screens
