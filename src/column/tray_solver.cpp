// The bubble-point column method: per component a tridiagonal tray balance with the K-values
// of the previous pass, tray temperatures from bubble points, and in the second stage the
// flows from the tray heat balances.
#include "column/tray_solver.h"

#include <cmath>
#include <exception>
#include <filesystem>

#include "column/column_case.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "state/units.h"
#include "thermo/enthalpy.h"
#include "thermo/equilibrium.h"

namespace tervale {

namespace {

// Where the feeds and side cuts stand, tray by tray (0 for none).
struct TrayLinks {
  std::array<int, kMaxTrays + 1> firstFeed{};
  std::array<int, kMaxTrays + 1> lastFeed{};
  TrayArray firstSL{}, firstSV{};  // flow of the first side cut of the tray
  TrayArray sumSL{}, sumSV{};      // flows of all side cuts of the tray
};

void LinkTrays(const SharedCalcState& s, TrayLinks& t) {
  const auto& c = s.Column;
  for (int f = 1; f <= s.NFeed; ++f) {
    int j = c.FeedTray[f];
    if (j < 1 || j > kMaxTrays) continue;
    if (t.firstFeed[j] == 0) t.firstFeed[j] = f;
    t.lastFeed[j] = f;
  }
  std::array<bool, kMaxTrays + 1> seenL{}, seenV{};
  for (int k = 1; k <= s.NSideLiq; ++k) {
    int j = c.LiqSideTray[k];
    if (j < 1 || j > kMaxTrays) continue;
    if (!seenL[j]) t.firstSL[j] = c.LiqSideFlow[k];
    seenL[j] = true;
    t.sumSL[j] += c.LiqSideFlow[k];
  }
  for (int k = 1; k <= s.NSideVap; ++k) {
    int j = c.VapSideTray[k];
    if (j < 1 || j > kMaxTrays) continue;
    if (!seenV[j]) t.firstSV[j] = c.VapSideFlow[k];
    seenV[j] = true;
    t.sumSV[j] += c.VapSideFlow[k];
  }
}

// F * z of the first feed on tray j for component i.
inline double FeedMoles(const ColumnCase& c, const TrayLinks& t, int j, int i) {
  int f = t.firstFeed[j];
  return f ? c.FeedFlow[f] * c.FeedComp[f][i] : 0.0;
}

}  // namespace

void InitTrayComposition(SharedCalcState& s) {
  auto& c = s.Column;
  RefreshColumnTotals(s);
  c.PrevNC = s.NC;
  c.PrevNTray = s.NTray;
  for (int i = 1; i <= s.NC; ++i) {
    double sum = 0;
    for (int f = 1; f <= s.NFeed; ++f) sum += c.FeedComp[f][i] * c.FeedFlow[f];
    double z = sum / c.TotalFeed;
    for (int j = 1; j <= s.NTray; ++j) {
      c.TrayX[j][i] = z;
      c.TrayY[j][i] = z;
    }
  }
  InitTrayProfiles(s);
}

bool ContinueTrayComposition(SharedCalcState& s) {
  auto& c = s.Column;
  if (s.NC != c.PrevNC) {
    ShowMessage(s, BiText{"No of Component is not Equal", "成分数が違います。"});
    return false;
  }
  const int n = s.NTray, prev = c.PrevNTray;
  if (prev >= 1 && prev <= kMaxTrays) {
    if (n < prev) {
      c.TrayX[n] = c.TrayX[prev];
      c.TrayY[n] = c.TrayY[prev];
    } else if (n > prev) {
      for (int j = n; j >= prev + 1; --j) {
        c.TrayX[j] = c.TrayX[prev];
        c.TrayY[j] = c.TrayY[prev];
      }
    }
  }
  c.PrevNC = s.NC;
  c.PrevNTray = s.NTray;
  InitTrayProfiles(s);
  return true;
}

void InitTrayProfiles(SharedCalcState& s) {
  auto& c = s.Column;
  RefreshColumnTotals(s);
  TrayLinks links;
  LinkTrays(s, links);
  const int n = s.NTray;
  const double D = c.TopLiquidFlow, R = c.RefluxRatio;
  const double S = D + c.TopVaporFlow;
  double Lrun = 0, Vrun = 0, Vnext = 0;
  auto feedSplit = [&](int j, double& FV, double& FL) {
    FV = FL = 0;
    if (int f = links.lastFeed[j]) {
      FV = c.FeedVF[f] * c.FeedFlow[f];
      FL = c.FeedFlow[f] - FV;
    }
  };
  if (S == 0) {
    // R is taken as a flow here, and tray 2's vapour starts at 0
    c.TrayL[1] = R;
    c.TrayV[1] = 0;
    Lrun = R;
    Vrun = R;
    Vnext = 0;
  } else if (R != 0) {
    c.TrayL[1] = R * S;
    c.TrayV[1] = 0;
    Lrun = R * S;
    Vrun = Vnext = S + R * S;
  } else {
    double FV, FL;
    feedSplit(1, FV, FL);
    c.TrayL[1] = FL;
    c.TrayV[1] = c.TopVaporFlow;
    Lrun = FL;
    Vrun = c.TopVaporFlow - FV;
    Vnext = c.TopVaporFlow;
  }
  c.TrayT[1] = ConvTempToBase(s, c.TopTempGuess);
  const double step = (c.BottomTempGuess - c.TopTempGuess) / (n - 1);
  for (int j = 2; j <= n - 1; ++j) {
    double FV, FL;
    feedSplit(j, FV, FL);
    Lrun += FL;
    Lrun -= links.sumSL[j];
    Vrun -= FV;
    Vrun += links.sumSV[j];
    // the factor is j, not j - 1: tray NTray - 1 already has the bottom estimate
    c.TrayT[j] = ConvTempToBase(s, c.TopTempGuess + j * step);
    c.TrayL[j] = Lrun;
    c.TrayV[j] = Vnext;
    Vnext = Vrun;
  }
  c.TrayT[n] = ConvTempToBase(s, c.BottomTempGuess);
  c.TrayL[n] = c.BottomFlow;
  c.TrayV[n] = Vnext;

  c.TrayP[1] = ConvPressToBase(s, c.TopPress);
  c.TrayP[n] = ConvPressToBase(s, c.BottomPress);
  if (n > 1) {
    int a = 1;
    while (true) {
      int b = a + 1;
      while (b < n && c.TrayPressInput[b] == 0) ++b;
      if (b > n) b = n;
      c.TrayP[b] = ConvPressToBase(s, c.TrayPressInput[b]);
      if (b - a > 1) {
        // the divisor b - a - 1 makes tray b - 1 equal to tray b
        const double d = (c.TrayPressInput[b] - c.TrayPressInput[a]) / (b - a - 1);
        for (int k = 1; k <= b - a - 1; ++k)
          c.TrayP[a + k] = ConvPressToBase(s, c.TrayPressInput[a] + k * d);
      }
      a = b;
      if (b >= n) break;
    }
  }
  c.TrayP[n] = ConvPressToBase(s, c.BottomPress);
}

void CalcFeedEnthalpies(SharedCalcState& s) {
  auto& c = s.Column;
  for (int f = 1; f <= s.NFeed; ++f) {
    if (s.EnthalpyMethod == 1) {
      // the feed temperature goes in as entered
      const double hv = CalcVaporEnthalpyPoly(s, c.FeedTemp[f], c.FeedComp[f]);
      const double hl = CalcLiquidEnthalpyPoly(s, c.FeedTemp[f], c.FeedComp[f]);
      c.FeedEnthalpy[f] = c.FeedVF[f] * hv + (1 - c.FeedVF[f]) * hl;
    } else {
      c.FeedEnthalpy[f] = 0;
    }
  }
}

namespace {

double BalanceError(const SharedCalcState& s, const TrayLinks& t) {
  const auto& c = s.Column;
  const int n = s.NTray;
  const double D = c.TopLiquidFlow;
  double sum = 0;
  for (int i = 1; i <= s.NC; ++i) {
    {
      const double in = c.TrayY[2][i] * c.TrayV[2] + FeedMoles(c, t, 1, i);
      const double out = (D + c.TrayL[1]) * c.TrayX[1][i] + c.TrayY[1][i] * c.TrayV[1];
      sum += std::fabs(in - out);
    }
    for (int j = 2; j <= n - 1; ++j) {
      const double in = c.TrayX[j - 1][i] * c.TrayL[j - 1] + c.TrayY[j + 1][i] * c.TrayV[j + 1] +
                        FeedMoles(c, t, j, i);
      const double out =
          (t.firstSL[j] + c.TrayL[j]) * c.TrayX[j][i] + (t.firstSV[j] + c.TrayV[j]) * c.TrayY[j][i];
      sum += std::fabs(in - out);
    }
    {
      const double in = c.TrayX[n - 1][i] * c.TrayL[n - 1] + FeedMoles(c, t, n, i);
      const double out = c.TrayX[n][i] * c.TrayL[n] + c.TrayY[n][i] * c.TrayV[n];
      sum += std::fabs(in - out);
    }
  }
  return sum / c.TotalFeed / n;
}

inline double Sign(double v) {
  return v > 0 ? 1.0 : (v < 0 ? -1.0 : 0.0);
}

}  // namespace

double CalcBalanceError(const SharedCalcState& s) {
  TrayLinks links;
  LinkTrays(s, links);
  return BalanceError(s, links);
}

TrayRunResult RunTrayCalculation(SharedCalcState& s, const TrayProgressFn& progress,
                                 bool writeResult) {
  auto& c = s.Column;
  TrayRunResult result;
  RefreshColumnTotals(s);
  TrayLinks links;
  LinkTrays(s, links);
  const int n = s.NTray, nc = s.NC;
  const double D = c.TopLiquidFlow, R = c.RefluxRatio;

  c.CalcFinished = 0;
  for (int i = 0; i <= kMaxComponents; ++i) s.Gamma[i] = 1.0;
  for (int j = 0; j <= kMaxTrays; ++j) c.TrayHV[j] = c.TrayHL[j] = 0;

  const int stages = s.EnthalpyMethod == 0 ? 1 : 2;
  if (stages == 2) CalcFeedEnthalpies(s);

  int firstRealTray = 1;
  double condenserVaporRatio = 0;
  if (R > 0) {
    firstRealTray = 2;
    condenserVaporRatio = c.TopVaporFlow / ((D + c.TopVaporFlow) * R + D);
  }

  TrayCompMatrix K{};
  TrayArray A{}, B{}, C{}, Dv{};
  auto trayK = [&](int j, double w) {
    for (int i = 1; i <= nc; ++i) {
      if (c.TrayX[j][i] > 0)
        K[j][i] = (1 - w) * c.TrayY[j][i] / c.TrayX[j][i] + w * s.KValue[i];
      else
        K[j][i] = s.KValue[i];
    }
  };

  for (int stage = 1; stage <= stages; ++stage) {
    double w = 1.0, prevError = 0, lastError = 0;
    int pass = 0;
    const double tol = c.ConvTolerance[stage];
    bool stageConverged = false;
    while (true) {
      // A: tray 1 temperature
      if (R == 0) {
        c.TrayT[1] = CalcDewTemperature(s, c.TrayT[1], c.TrayP[1], c.TrayY[1]);
      } else if (condenserVaporRatio == 0) {
        c.TrayT[1] = CalcBubbleTemperature(s, c.TrayT[1], c.TrayP[1], c.TrayX[1]);
      }
      // (a condenser with a vapour product keeps its temperature and the K-values as the
      //  last tray left them)
      // B: tray 1 enthalpies
      if (stage == 2) {
        c.TrayHV[1] = CalcVaporEnthalpy(s, c.TrayT[1], c.TrayP[1], c.TrayY[1]);
        c.TrayHL[1] = CalcLiquidEnthalpy(s, c.TrayT[1], c.TrayP[1], c.TrayX[1]);
      }
      // C: tray 1 K-values
      trayK(1, w);
      // D: the trays below
      for (int j = 2; j <= n; ++j) {
        c.TrayT[j] = CalcBubbleTemperature(s, c.TrayT[j], c.TrayP[j], c.TrayX[j]);
        if (stage == 2) {
          c.TrayHV[j] = CalcVaporEnthalpy(s, c.TrayT[j], c.TrayP[j], c.TrayY[j]);
          c.TrayHL[j] = CalcLiquidEnthalpy(s, c.TrayT[j], c.TrayP[j], c.TrayX[j]);
          if (j >= firstRealTray + 1) {
            const int k = j - 1;
            double F = 0, Hf = 0;
            if (int f = links.firstFeed[k]) {
              F = c.FeedFlow[f];
              Hf = c.FeedEnthalpy[f];
            }
            const double SV = j > 2 ? links.firstSV[k] : 0.0;
            const double SL = links.firstSL[k];
            double Q = (c.TrayHV[k] - c.TrayHL[k]) * (SV + c.TrayV[k]) - (Hf - c.TrayHL[k]) * F;
            const bool withAbove = !(j <= firstRealTray + 1 && firstRealTray == 1);
            if (withAbove) Q += (c.TrayHL[k] - c.TrayHL[k - 1]) * c.TrayL[k - 1];
            if (c.TrayHV[j] != c.TrayHL[k]) Q = Q / (c.TrayHV[j] - c.TrayHL[k]);
            // blended with the vapour of the tray above, not the old value of this tray
            c.TrayV[j] = (1 - w) * c.TrayV[j - 1] + w * Q;
            c.TrayL[k] = F + c.TrayV[j] - c.TrayV[k] - SV - SL;
            if (withAbove) c.TrayL[k] += c.TrayL[k - 1];
          }
        }
        trayK(j, w);
      }
      // E: the tridiagonal balance of each component
      for (int i = 1; i <= nc; ++i) {
        B[1] = -c.TrayV[1] * K[1][i] - c.TrayL[1] - D;
        C[1] = K[2][i] * c.TrayV[2];
        Dv[1] = -FeedMoles(c, links, 1, i);
        for (int j = 2; j <= n - 1; ++j) {
          A[j] = c.TrayL[j - 1];
          B[j] = -(links.firstSV[j] + c.TrayV[j]) * K[j][i] - c.TrayL[j] - links.firstSL[j];
          C[j] = K[j + 1][i] * c.TrayV[j + 1];
          Dv[j] = -FeedMoles(c, links, j, i);
        }
        A[n] = c.TrayL[n - 1];
        B[n] = -(K[n][i] * c.TrayV[n] + c.TrayL[n]);
        C[n] = 0;
        Dv[n] = -FeedMoles(c, links, n, i);
        for (int j = 1; j <= n - 1; ++j) {
          if (B[j] == 0) continue;  // a zero diagonal skips the row whole
          C[j] /= B[j];
          Dv[j] /= B[j];
          B[j + 1] -= A[j + 1] * C[j];
          Dv[j + 1] -= A[j + 1] * Dv[j];
        }
        if (B[n] != 0) Dv[n] /= B[n];
        for (int j = n - 1; j >= 1; --j) Dv[j] -= Dv[j + 1] * C[j];
        for (int j = 1; j <= n; ++j) {
          const double x = c.TrayX[j][i];
          const double dx = Dv[j] - x;
          // the limit is not scaled by w; an unlimited value stands as solved
          if (w * std::fabs(dx) > 0.8 * x) Dv[j] = x + Sign(dx) * std::fabs(0.8 * x);
          if (Dv[j] <= 0) {
            if (x > 0) Dv[j] = x * std::exp((Dv[j] - x) / x);
            if (Dv[j] <= 0) Dv[j] = 1e-10;
          }
          c.TrayX[j][i] = Dv[j];
          c.TrayY[j][i] = K[j][i] * Dv[j];
        }
      }
      // F: normalise
      for (int j = 1; j <= n; ++j) {
        double sx = 0, sy = 0;
        for (int i = 1; i <= nc; ++i) {
          sx += c.TrayX[j][i];
          sy += c.TrayY[j][i];
        }
        if (sx > 0)
          for (int i = 1; i <= nc; ++i) c.TrayX[j][i] /= sx;
        if (sy > 0)
          for (int i = 1; i <= nc; ++i) c.TrayY[j][i] /= sy;
      }
      ++result.passes;
      // G, H
      const double error = BalanceError(s, links);
      lastError = error;
      if (pass > 0) {
        if (std::fabs(error - prevError) <= prevError * tol) {
          stageConverged = true;
          break;
        }
        if ((prevError - error) * prevError > 0) {
          w += 0.05;
          if (w > 1.0) w = 1.0;
        } else if (w > 0.5) {
          w -= 0.1;
        }
      }
      prevError = error;
      if (error <= tol) {
        stageConverged = true;
        break;
      }
      bool stop = false;
      if (progress) stop = progress(TrayProgress{stage, pass, error, false, {}});
      ++pass;
      if (stop) {
        result.stopped = true;
        return result;
      }
      if (pass > c.ConvMaxIter[stage]) break;
    }
    if (stageConverged && progress) {
      if (progress(TrayProgress{stage, pass, lastError, true, kConvergencedText})) {
        result.stopped = true;
        return result;
      }
    }
    result.converged = stageConverged;
  }

  c.CalcFinished = 1;
  if (writeResult) {
    const std::string keepName = s.DataFileName;
    const std::filesystem::path target =
        std::filesystem::path(s.DataPath.empty() ? std::string(".") : s.DataPath) / "Result.dat";
    try {
      WriteColumnFile(s, target.string());
      result.resultWritten = true;
    } catch (const std::exception& e) {
      ShowMessage(s, std::string(e.what()));
    }
    s.DataFileName = keepName;
  }
  return result;
}

}  // namespace tervale
