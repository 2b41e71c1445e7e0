#include "regress/vle_graph.h"

#include <cmath>

#include "io/display_format.h"
#include "io/record_writer.h"
#include "regress/vle_regression.h"
#include "state/shared_state.h"

namespace tervale {
namespace {

constexpr std::string_view kParameterFormat = "#.0000000E+##";
constexpr std::string_view kReadoutFormat = "#.####0";
constexpr double kHitRows = 30;

bool IsMissing(double v) {
  return v <= kVLEMissing;
}

// The power of ten one below the magnitude of v: Int(log10(v) - 1).
double StepBelow(double v) {
  return std::pow(10.0, std::floor(std::log10(std::fabs(v)) - 1));
}

}  // namespace

double RoundAxisTop(double max) {
  if (max == 0 || !std::isfinite(max)) return 1;
  const double step = StepBelow(max);
  return (std::floor(max / step) + 1) * step;
}

double RoundAxisBottom(double min) {
  if (min == 0 || !std::isfinite(min)) return 0;
  const double step = StepBelow(min);
  return std::floor(min / step) * step;
}

double RoundGammaTop(double gammaMax) {
  for (double c : {2.0, 5.0, 10.0, 20.0})
    if (gammaMax < c) return c;
  return 50;
}

VLEGraphData DrawVLEGraph(SharedCalcState& s) {
  VLEDataCase& c = s.VLE;
  VLEGraphData g;
  g.constantPressure = c.TPType == 0;

  const double dx = (c.GraphXMax - c.GraphXMin) / 200;
  for (int n = 1; n <= kVLECurvePoints; ++n) {
    const double x = c.GraphXMin + dx * (n - 1);
    double g1 = 0, g2 = 0;
    CalcActivityCoeff(s, x, g1, g2);
    c.CurveX[n] = x;
    c.CurveGamma1[n] = g1;
    c.CurveGamma2[n] = g2;
    if (g.constantPressure) {
      c.CurveTP[n] = CalcBubbleTempFromGamma(s, 0.0, x, g1, g2);  // from 0 for every point
    } else {
      c.CurveTP[n] = CalcBubblePressFromGamma(s, c.VLETemperature, x, g1, g2);
    }
    c.CurveY[n] = c.VaporY1;
    if (IsMissing(g1) || IsMissing(g2)) {
      c.CurveTP[n] = kVLEMissing;
      c.CurveY[n] = kVLEMissing;
    }
  }

  // The T or P axis, in the user's pressure unit for a constant-temperature case.
  double max = g.constantPressure ? -273.15 : 0;
  double min = 9999999.0;
  double gammaMax = 1.0;
  for (int n = 1; n <= kVLECurvePoints; ++n) {
    if (IsMissing(c.CurveTP[n])) {
      g.tpShown[n] = kVLEMissing;
    } else {
      g.tpShown[n] = g.constantPressure ? c.CurveTP[n] : VLEPressureToCaseUnit(s, c.CurveTP[n]);
      max = std::fmax(max, g.tpShown[n]);
      min = std::fmin(min, g.tpShown[n]);
    }
    if (!IsMissing(c.CurveGamma1[n])) gammaMax = std::fmax(gammaMax, c.CurveGamma1[n]);
    if (!IsMissing(c.CurveGamma2[n])) gammaMax = std::fmax(gammaMax, c.CurveGamma2[n]);
  }
  g.tpTop = RoundAxisTop(max);
  g.tpBottom = RoundAxisBottom(min);
  g.tpTick = (g.tpTop - g.tpBottom) / 5;
  g.gammaTop = RoundGammaTop(gammaMax);

  if (IsEstimateType(c.CalcType)) {
    for (int i = 1; i <= c.NVLEData; ++i) {
      VLEMeasuredPoint p;
      p.x = c.DataX[i];
      p.y = c.DataY[i];
      p.gamma1 = c.GammaExp[i][1];
      p.gamma2 = c.GammaExp[i][2];
      p.tp = g.constantPressure ? c.DataTemp[i] : VLEPressureToCaseUnit(s, c.DataPress[i]);
      p.insideX = p.x >= c.GraphXMin && p.x <= c.GraphXMax;
      p.insideY = p.y >= c.GraphYMin && p.y <= c.GraphYMax;
      g.points.push_back(p);
    }
    g.objectiveShown = true;
    g.objective = CalcObjectiveSum(s);
    g.objectiveText = io::FormatShortest(g.objective);
    g.objectiveCaption = ObjectiveShortCaption(c.ObjectiveFunc);
  }
  if (IsWilsonType(c.CalcType)) {
    g.para12Text = io::FormatNumber(c.WilsonLambda12, kParameterFormat);
    g.para21Text = io::FormatNumber(c.WilsonLambda21, kParameterFormat);
  } else {
    g.para12Text = io::FormatNumber(c.NrtlTau12, kParameterFormat);
    g.para21Text = io::FormatNumber(c.NrtlTau21, kParameterFormat);
    g.alphaText = io::FormatNumber(c.NrtlAlpha, kParameterFormat);
  }
  return g;
}

VLEMouseReadout ReadVLEMouse(const SharedCalcState& s, const VLEGraphFrame& frame, double clickX,
                             double clickY) {
  const double at = std::floor((clickX - frame.left) / (frame.right - frame.left) * 200 + 1);
  if (!(at >= 1 && at <= kVLECurvePoints)) return VLEMouseReadout{};
  return ReadVLEMouseAt(s, frame, static_cast<int>(at), clickX, clickY);
}

VLEMouseReadout ReadVLEMouseAt(const SharedCalcState& s, const VLEGraphFrame& frame, int index,
                               double clickX, double clickY) {
  const VLEDataCase& c = s.VLE;
  VLEMouseReadout r;
  if (index < 1 || index > kVLECurvePoints) return r;
  r.ignored = false;
  int n = index;
  for (int i = 1; i <= c.NVLEData; ++i) {
    const double ni =
        std::floor((c.DataX[i] - c.GraphXMin) / (c.GraphXMax - c.GraphXMin) * 200 + 1);
    if (!(ni >= 1 && ni <= kVLECurvePoints)) continue;  // outside the window: cannot be hit
    if (std::fabs(n - ni) < 2 && std::fabs(clickY - frame.RowOfY(c, c.DataY[i])) < kHitRows) {
      r.hit = true;
      r.dataIndex = i;
      n = static_cast<int>(ni);
      break;
    }
  }
  if (!r.hit && !(std::fabs(clickY - frame.RowOfY(c, c.CurveY[n])) < kHitRows)) return r;

  const bool constantPressure = c.TPType == 0;
  r.visible = true;
  r.index = n;
  r.crossX = clickX;
  r.crossY = clickY;
  r.x = r.hit ? c.DataX[r.dataIndex] : c.CurveX[n];
  r.y = c.CurveY[n];
  r.gamma1 = c.CurveGamma1[n];
  r.gamma2 = c.CurveGamma2[n];
  r.tp = c.CurveTP[n];
  r.xText = io::FormatNumber(r.x, kReadoutFormat);
  r.yText = io::FormatNumber(r.y, kReadoutFormat);
  r.gamma1Text = io::FormatNumber(r.gamma1, kReadoutFormat);
  r.gamma2Text = io::FormatNumber(r.gamma2, kReadoutFormat);
  r.tpText = io::FormatNumber(r.tp, "####.#0");
  r.tpLabel = constantPressure ? "Temp=" : "Press=";
  r.tpUnit = constantPressure ? "℃" : "mmHg";
  if (r.hit) {
    // The measured pressure column is shown in both cases, as the program always did.
    r.measuredY = c.DataY[r.dataIndex];
    r.measuredTP = c.DataPress[r.dataIndex];
    r.measuredYText = io::FormatNumber(r.measuredY, kReadoutFormat);
    r.measuredTPText = io::FormatNumber(r.measuredTP, constantPressure ? "####.#0" : "###.##0");
  }
  return r;
}

VLEParameterDialog OpenVLEChangeParameter(const SharedCalcState& s) {
  const VLEDataCase& c = s.VLE;
  VLEParameterDialog d;
  if (IsWilsonType(c.CalcType)) {
    d.title = "Change Wilson Parameter(V-L Equibrium)";
    d.old12 = io::FormatNumber(c.WilsonLambda12, kParameterFormat);
    d.old21 = io::FormatNumber(c.WilsonLambda21, kParameterFormat);
  } else {
    d.title = "Change N.R.T.L. Parameter(V-L Equibrium)";
    d.old12 = io::FormatNumber(c.NrtlTau12, kParameterFormat);
    d.old21 = io::FormatNumber(c.NrtlTau21, kParameterFormat);
    d.oldAlpha = io::FormatNumber(c.NrtlAlpha, kParameterFormat);
    d.alphaShown = true;
  }
  return d;
}

void ApplyVLEChangeParameter(SharedCalcState& s, std::string_view new12, std::string_view new21,
                             std::string_view newAlpha) {
  VLEDataCase& c = s.VLE;
  auto take = [](std::string_view text, double& value) {
    if (!IsBlankField(text)) value = ReadNumberLeniently(text);
  };
  if (IsWilsonType(c.CalcType)) {
    take(new12, c.WilsonLambda12);
    take(new21, c.WilsonLambda21);
  } else {
    take(new12, c.NrtlTau12);
    take(new21, c.NrtlTau21);
    take(newAlpha, c.NrtlAlpha);
  }
}

bool ApplyVLEChangeScale(SharedCalcState& s, std::string_view xLower, std::string_view xUpper,
                         std::string_view yLower, std::string_view yUpper) {
  const double x0 = ReadNumberLeniently(xLower), x1 = ReadNumberLeniently(xUpper);
  const double y0 = ReadNumberLeniently(yLower), y1 = ReadNumberLeniently(yUpper);
  auto refuse = [&](std::string_view text) {
    ShowMessage(s, Same(text));
    return false;
  };
  if (x0 < 0) return refuse("Ｘ軸の下限が０以下です");
  if (x1 > 1) return refuse("Ｘ軸の上限が１以上です");
  if (x0 >= x1) return refuse("Ｘ軸の下限≧上限です");
  if (y0 < 0) return refuse("Ｙ軸の下限が０以下です");
  if (y1 > 1) return refuse("Ｙ軸の上限が１以上です");
  if (y0 >= y1) return refuse("Ｙ軸の下限≧上限です");
  VLEDataCase& c = s.VLE;
  c.GraphXMin = x0;
  c.GraphXMax = x1;
  c.GraphYMin = y0;
  c.GraphYMax = y1;
  return true;
}

}  // namespace tervale
