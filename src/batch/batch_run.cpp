#include "batch/batch_run.h"

#include <cmath>
#include <string>

#include "batch/batch_results.h"
#include "batch/batch_run_files.h"
#include "io/record_writer.h"
#include "state/errors.h"
#include "state/shared_state.h"
#include "state/units.h"
#include "thermo/enthalpy.h"
#include "thermo/equilibrium.h"

namespace tervale {

std::string_view BatchRunEndName(BatchRunEnd end) {
  switch (end) {
    case BatchRunEnd::TanksExhausted:
      return "tanks-exhausted";
    case BatchRunEnd::TimeOver:
      return "time-over";
    case BatchRunEnd::Stopped:
      return "stopped";
    case BatchRunEnd::TotalRefluxOnly:
      return "total-reflux-only";
    case BatchRunEnd::Cancelled:
      return "cancelled";
  }
  return "";
}

void BatchRunObserver::Notice(SharedCalcState& s, std::string_view text) {
  ShowMessage(s, text);
}

void BatchRunObserver::RequestStop(SharedCalcState& s) {
  if (s.Batch.CalcStopFlag == 0) s.Batch.CalcStopFlag = 1;
}

RkgTable MakeRkgTable() {
  RkgTable k;
  const double r = std::sqrt(0.5);
  k.A = {0, 0.5, 1 - r, 1 + r, 1.0 / 6.0};
  k.B = {0, 2.0, 1.0, 1.0, 2.0};
  k.C = {0, 0.5, 1 - r, 1 + r, 0.5};
  return k;
}

bool BatchChangeOffered(const SharedCalcState& s, BatchRunChange which) {
  const auto& b = s.Batch;
  if (b.CalcStopFlag < 0) return false;  // the end of a run disables the buttons
  const bool product = b.CalcPhase != 0;
  switch (which) {
    case BatchRunChange::DiffTime:
    case BatchRunChange::SaveInterval:
      return true;
    case BatchRunChange::ConvLimit:
      return !product;
    case BatchRunChange::RefluxRatio:
      return product;
    case BatchRunChange::Distillate:
      return product && b.BatchOpeType == 2;
    case BatchRunChange::QReb:
      return !product || b.BatchOpeType == 3;
  }
  return false;
}

bool ApplyBatchRunChange(SharedCalcState& s, BatchRunChange which, double newValue,
                         std::string_view typed) {
  if (!BatchChangeOffered(s, which)) return false;
  auto& b = s.Batch;
  double* copy = nullptr;
  double old = 0;
  double stored = newValue;
  BiText text{};
  switch (which) {
    case BatchRunChange::DiffTime:
      copy = &b.CurDiffTime, old = b.DiffTime;
      text = {" Change Diff Time  Old=", " 微分時間変更　　　　Old="};
      break;
    case BatchRunChange::SaveInterval:
      copy = &b.CurSaveInterval, old = b.SaveInterval;
      text = {" Change Data Save Interval Old=", " データ保存周期変更　Old="};
      break;
    case BatchRunChange::ConvLimit:
      copy = &b.CurConvLimit, old = b.TRefluxConvLimit;
      text = {" Change Conv Limit  Old=", " 収束許容誤差変更　　Old="};
      break;
    case BatchRunChange::QReb:
      copy = &b.CurQReb, old = ConvHeatToDisplay(s, b.CurQReb);
      stored = ConvHeatToBase(s, newValue);
      text = {" Change Reboiler Heat Duty Old=", " リボイラ熱量変更　　Old="};
      break;
    case BatchRunChange::RefluxRatio:
      copy = &b.CurRefluxRatio, old = b.CurRefluxRatio;
      text = {" Change Reflux Ratio Old=", " 還流比変更　　　　　Old="};
      break;
    case BatchRunChange::Distillate:
      copy = &b.CurDistillate, old = b.CurDistillate;
      text = {" Change Distillate　Old=", " 抜き出し量変更　　　Old="};
      break;
  }
  if (stored == *copy) return false;
  std::string line(text.Pick(s.LanguageFlag));
  line += PrintedNumber(old);
  line += " New=";
  line += typed.empty() ? io::FormatShortest(newValue) : std::string(typed);
  AppendBatchLog(s, b.CalcTime, line);
  *copy = stored;
  return true;
}

double BatchTankValue(const SharedCalcState& s) {
  const auto& b = s.Batch;
  const int r = b.TankRow;
  if (r < 1 || r > kMaxTankRows) return 0;
  const int key = b.TankChangeKey[r];
  const int nc = s.NC;
  const auto& c = b.TankContent;
  const auto& mw = s.Comp.CompMW;
  double v = 0;
  if (key == -2) {
    for (int j = 1; j <= nc; ++j) v += c[j] * mw[j];
  } else if (key == -1) {
    for (int j = 1; j <= nc; ++j) v += c[j];
  } else if (key >= 1 && key < 100 && key <= nc) {
    double sum = 0;
    for (int j = 1; j <= nc; ++j) sum += c[j];
    v = c[key] / sum;
  } else if (key > 100 && key - 100 <= nc) {
    double sum = 0;
    for (int j = 1; j <= nc; ++j) sum += c[j] * mw[j];
    v = c[key - 100] * mw[key - 100] / sum;
  }
  return v;
}

bool BatchTankChangeDue(const SharedCalcState& s) {
  const auto& b = s.Batch;
  if (b.TankRow < 1 || b.TankRow > kMaxTankRows) return false;
  const double v = BatchTankValue(s);
  const double limit = b.TankChangeLimit[b.TankRow];
  // The "<" sense is stored as the negative; a zero limit would change on v < 0, that is never.
  return limit > 0 ? v > limit : v < -limit;
}

namespace {

// One run: the loop of steps with the ends of a run, over the state.
class BatchRunner {
 public:
  BatchRunner(SharedCalcState& s, BatchRunObserver* observer, const BatchRunOptions& options)
      : s_(s), b_(s.Batch), observer_(observer), files_(options.writeFiles) {}

  BatchRunResult Run();

 private:
  void Start();
  // Returns true when the run ended inside the step.
  bool Step();
  void Enthalpies();
  double HoldupsAbove(double t);
  void Distillate(double dt);
  void Still(double dt, double mTop);
  void FlowsTopDown();
  void FlowsBottomUp();
  void CondenserRule();
  void ExtremesAndHeat(double dt);
  // Returns false when the user cancelled at a negative composition.
  bool Integrate(double dt, bool& failed);
  void Equilibrium();
  bool TotalRefluxTest();  // true when the run ends here (type 1)
  bool TankTest();         // true when the run ends here (tanks exhausted)
  void ChangeTank();
  void EndBatchCalculation();
  void Log(double time, const BiText& text) {
    if (files_) AppendBatchLog(s_, time, text.Pick(s_.LanguageFlag));
  }
  void Notice(std::string_view text) {
    if (observer_) {
      observer_->Notice(s_, text);
    } else {
      ShowMessage(s_, text);
    }
  }
  void Profile() {
    if (observer_) observer_->ProfileChanged(s_);
  }

  SharedCalcState& s_;
  BatchCase& b_;
  BatchRunObserver* observer_;
  bool files_;
  BatchRunResult result_;
  RkgTable rkg_;
  double t_ = 0;
  double dt_ = 0;
  double qr_ = 0;
  bool truncateHistory_ = false;
  int n_ = 0;
  int nc_ = 0;
};

void BatchRunner::Start() {
  rkg_ = MakeRkgTable();
  n_ = s_.NTray;
  nc_ = s_.NC;
  ShowMessage(s_, BiText{"Start Calculation", "計算を開始します"});
  if (files_) StartBatchLog(s_);
  b_.CalcStopFlag = 0;
  b_.CalcStarted = 0;
  b_.CalcPhase = 0;
  b_.TotalDistillate = 0;
  b_.NextSaveTime = 0;
  b_.TankCounter = 0;
  b_.TankRow = 1;
  b_.TanksExhausted = 0;
  b_.CurSaveInterval = b_.SaveInterval;
  b_.CurConvLimit = b_.TRefluxConvLimit;
  b_.CurDiffTime = dt_ = b_.DiffTime;
  b_.CurQReb = b_.QRebSet;
  const bool cont = b_.ContinueFromTReflux != 0;
  if (cont) {
    t_ = b_.ContinueTime;
  } else {
    b_.ContinueTime = 0;
    t_ = 0;
  }
  if (b_.BatchOpeType > 1) {
    b_.CurDistillate = b_.TankOperation[1][kTankDistillate];
    b_.CurRefluxRatio = b_.TankOperation[1][kTankReflux];
  }
  if (b_.HoldupBasis == 1) {
    for (int i = 1; i <= n_ - 1; ++i) b_.Holdup[i] = b_.TrayHoldupInput[i][kHoldupKgmol];
  }
  for (int i = 1; i <= n_; ++i) {
    if (!cont) {
      b_.HoldupChange[i] = 0;
      b_.LiqEnthalpyChange[i] = 0;
      b_.HeatTotal[i] = 0;
      b_.HeatTotalTank[i] = 0;
      b_.VaporFlow[i] = 0;
      b_.LiquidFlow[i] = 0;
      for (int j = 1; j <= nc_; ++j) {
        b_.RkgCarry[j][i] = 0;
        b_.LiqComp[i][j] = b_.FeedComp[j];
      }
    } else {
      b_.HeatTotalTank[i] = b_.HeatTotal[i];
    }
  }
  for (int j = 1; j <= nc_; ++j) b_.TankContent[j] = 0;
  BatchPressureProfile(s_, b_.TrayPress);
  // Start temperatures from the charge's bubble point on every tray.
  const double t0 = ConvTempToBase(s_, b_.InitialTemp);
  for (int i = 1; i <= n_; ++i) {
    b_.TrayTemp[i] = CalcBubbleTemperature(s_, t0, b_.TrayPress[i], b_.FeedComp);
    double sum = 0;
    for (int j = 1; j <= nc_; ++j) {
      b_.VapComp[i][j] = s_.KValue[j] * b_.LiqComp[i][j];
      sum += b_.VapComp[i][j];
    }
    if (sum > 0)
      for (int j = 1; j <= nc_; ++j) b_.VapComp[i][j] /= sum;
  }
  b_.TempMin = b_.TrayTemp[1];
  b_.TempMax = b_.TrayTemp[n_];
  b_.VaporMax = 0;
  b_.VaporMin = 99999999;
  b_.LiquidMax = 0;
  b_.LiquidMin = 999999999;
  b_.RunTime = t_;
  b_.StepTime = dt_;
  b_.ResultsExist = true;
}

void BatchRunner::Enthalpies() {
  for (int i = 1; i <= n_; ++i) {
    b_.VapEnthalpy[i] = CalcVaporEnthalpy(s_, b_.TrayTemp[i], b_.TrayPress[i], b_.VapComp[i]);
    const double h = CalcLiquidEnthalpy(s_, b_.TrayTemp[i], b_.TrayPress[i], b_.LiqComp[i]);
    if (b_.CalcStarted != 0) b_.LiqEnthalpyChange[i] = h - b_.LiqEnthalpy[i];
    b_.LiqEnthalpy[i] = h;
  }
}

double BatchRunner::HoldupsAbove(double t) {
  double mTop = 0;
  const int col = b_.HoldupBasis - 1;
  for (int i = 1; i <= n_ - 1; ++i) {
    if (b_.HoldupBasis != 1) {
      // Weight or volume over the mean molecular weight; no density anywhere, by design.
      double mw = 0;
      for (int j = 1; j <= nc_; ++j) mw += b_.LiqComp[i][j] * s_.Comp.CompMW[j];
      const double m = b_.TrayHoldupInput[i][col] / mw;
      if (t != 0) b_.HoldupChange[i] = m - b_.Holdup[i];
      b_.Holdup[i] = m;
    }
    mTop += b_.Holdup[i];
  }
  return mTop;
}

void BatchRunner::Distillate(double dt) {
  const auto& M = b_.Holdup;
  const auto& dM = b_.HoldupChange;
  const auto& dh = b_.LiqEnthalpyChange;
  const auto& H = b_.VapEnthalpy;
  const auto& h = b_.LiqEnthalpy;
  if (b_.BatchOpeType == 3) {
    const double R = b_.CurRefluxRatio;
    double d = qr_ - H[2] * dM[1] - dh[1] * dM[1] - dh[n_] * dM[n_];
    for (int i = 2; i <= n_ - 1; ++i) d += b_.TrayHeat[i] - dh[i] * dM[i];
    d /= (R + 1) * H[2] - R * h[1];
    b_.CurDistillate = d;
  }
  (void)M;
  if (b_.BatchOpeType != 1) {
    const double dd = b_.CurDistillate * dt;
    b_.TotalDistillate += dd;
    for (int j = 1; j <= nc_; ++j) b_.TankContent[j] += dd * b_.LiqComp[1][j];
  }
}

void BatchRunner::Still(double dt, double mTop) {
  const double m = b_.TotalFeed - mTop - b_.TotalDistillate;
  if (b_.CalcStarted != 0 && (b_.CalcPhase != 0 || b_.HoldupBasis != 0)) {
    b_.HoldupChange[n_] = (m - b_.Holdup[n_]) / dt;
  }
  b_.Holdup[n_] = m;
}

void BatchRunner::CondenserRule() {
  b_.TrayHeat[1] = -((b_.VapEnthalpy[2] - b_.LiqEnthalpy[1]) * b_.VaporFlow[2] -
                     b_.LiqEnthalpyChange[1] * b_.Holdup[1]);
  b_.VaporFlow[1] = 0;
}

void BatchRunner::FlowsTopDown() {
  auto& V = b_.VaporFlow;
  auto& L = b_.LiquidFlow;
  auto& Q = b_.TrayHeat;
  const auto& M = b_.Holdup;
  const auto& dM = b_.HoldupChange;
  const auto& dh = b_.LiqEnthalpyChange;
  const auto& H = b_.VapEnthalpy;
  const auto& h = b_.LiqEnthalpy;
  const double R = b_.CurRefluxRatio;
  const double D = b_.CurDistillate;
  const int N = n_;
  L[1] = R * D;
  V[2] = (R + 1) * D + dM[1];
  CondenserRule();
  for (int i = 2; i <= N - 1; ++i) {
    V[i + 1] = ((h[i] - h[i - 1]) * L[i - 1] + (H[i] - h[i]) * V[i] + dh[i] * M[i] - Q[i]) /
               (H[i + 1] - h[i]);
    L[i] = V[i + 1] + L[i - 1] - V[i] - dM[i];
  }
  // The product of the four factors stands exactly so.
  Q[N] = (H[N] - h[N]) * V[N] - (h[N - 1] - h[N]) * L[N - 1] * M[N] * dh[N];
  L[N] = 0;
  qr_ = Q[N];
}

void BatchRunner::FlowsBottomUp() {
  auto& V = b_.VaporFlow;
  auto& L = b_.LiquidFlow;
  auto& Q = b_.TrayHeat;
  const auto& M = b_.Holdup;
  const auto& dM = b_.HoldupChange;
  const auto& dh = b_.LiqEnthalpyChange;
  const auto& H = b_.VapEnthalpy;
  const auto& h = b_.LiqEnthalpy;
  const int N = n_;
  Q[N] = qr_;
  V[N] = ((h[N - 1] - h[N]) * dM[N] - dh[N] * M[N] + qr_) / (H[N] - h[N - 1]);
  L[N - 1] = V[N] + dM[N];
  for (int i = N - 1; i >= 2; --i) {
    V[i] = ((h[i - 1] - h[i]) * (L[i] + dM[i]) - dh[i] * M[i] + (H[i + 1] - h[i - 1]) * V[i + 1] +
            Q[i]) /
           (H[i] - h[i - 1]);
    L[i - 1] = V[i] + L[i] - V[i + 1] + dM[i];
  }
  CondenserRule();
}

void BatchRunner::ExtremesAndHeat(double dt) {
  for (int i = 1; i <= n_; ++i) {
    const double v = b_.VaporFlow[i], l = b_.LiquidFlow[i];
    if (v > b_.VaporMax) b_.VaporMax = v;
    if (l > b_.LiquidMax) b_.LiquidMax = l;
    if (v != 0 && v < b_.VaporMin) b_.VaporMin = v;
    if (l != 0 && l < b_.LiquidMin) b_.LiquidMin = l;
    b_.HeatTotal[i] += b_.TrayHeat[i] * dt;
    b_.HeatTotalTank[i] += b_.TrayHeat[i] * dt;
  }
}

bool BatchRunner::Integrate(double dt, bool& failed) {
  const int N = n_;
  const auto& V = b_.VaporFlow;
  const auto& L = b_.LiquidFlow;
  const auto& M = b_.Holdup;
  TrayArray w, K, a, bcoef, c, f;
  for (int j = 1; j <= nc_; ++j) {
    if (b_.LiqComp[N][j] <= 0) continue;
    auto& q = b_.RkgCarry[j];
    for (int i = 1; i <= N; ++i) {
      w[i] = b_.LiqComp[i][j];
      K[i] = b_.VapComp[i][j] / w[i];
    }
    // The linear system, frozen for the whole step.
    a[1] = -V[2] / M[1];
    bcoef[1] = (V[2] / M[1]) * K[2];
    for (int i = 2; i <= N - 1; ++i) {
      a[i] = L[i - 1] / M[i];
      bcoef[i] = -((K[i] - 1) * V[i] + L[i - 1] + V[i + 1]) / M[i];
      c[i] = K[i + 1] * V[i + 1] / M[i];
    }
    a[N] = L[N - 1] / M[N];
    bcoef[N] = -((K[N] - 1) * V[N] + L[N - 1]) / M[N];
    for (int st = 1; st <= 4; ++st) {
      f[1] = a[1] * w[1] + bcoef[1] * w[2];
      for (int i = 2; i <= N - 1; ++i) f[i] = a[i] * w[i - 1] + bcoef[i] * w[i] + c[i] * w[i + 1];
      f[N] = a[N] * w[N - 1] + bcoef[N] * w[N];
      const double A = rkg_.A[st], B = rkg_.B[st], C = rkg_.C[st];
      for (int i = 1; i <= N; ++i) {
        const double k = f[i] * dt;
        const double r = (k - q[i] * B) * A;
        w[i] += r;
        q[i] += 3.0 * r - k * C;
      }
    }
    // Sign test: the new value waits in VapComp.
    for (int i = 1; i <= N; ++i) {
      if (w[i] > 0) {
        b_.VapComp[i][j] = w[i];
        continue;
      }
      Answer answer = AskUser(s_,
                              BiText{"ERROR:Runge-Kutta-Gill Negative composition",
                                     "ERROR:Runge-Kutta-Gill 組成がマイナス"},
                              Buttons::RetryCancel);
      if (answer == Answer::Cancel) return false;
      if (files_) {
        std::string line = " i=" + PrintedNumber(j) + " j =" + PrintedNumber(i) +
                           ": Runge - Kutta - Gillの計算で組成がマイナス";
        AppendBatchLog(s_, t_, line);
      }
      b_.VapComp[i][j] = b_.LiqComp[i][j];
      failed = true;
    }
  }
  return true;
}

void BatchRunner::Equilibrium() {
  for (int i = n_; i >= 1; --i) {
    auto& x = b_.LiqComp[i];
    auto& y = b_.VapComp[i];
    double sum = 0;
    for (int j = 1; j <= nc_; ++j) sum += x[j];
    if (!(sum > 0)) continue;
    for (int j = 1; j <= nc_; ++j) x[j] /= sum;
    b_.TrayTemp[i] = CalcBubbleTemperature(s_, b_.TrayTemp[i], b_.TrayPress[i], x);
    double sy = 0;
    for (int j = 1; j <= nc_; ++j) {
      y[j] = s_.KValue[j] * x[j];
      sy += y[j];
    }
    if (sy > 0)
      for (int j = 1; j <= nc_; ++j) y[j] /= sy;
    if (b_.TrayTemp[i] > b_.TempMax) b_.TempMax = b_.TrayTemp[i];
    if (b_.TrayTemp[i] < b_.TempMin) b_.TempMin = b_.TrayTemp[i];
  }
}

bool BatchRunner::TotalRefluxTest() {
  double e = 0;
  for (int i = 1; i <= n_ - 1; ++i)
    for (int j = 1; j <= nc_; ++j) {
      const double d = std::fabs(b_.LiqComp[i][j] - b_.VapComp[i + 1][j]);
      if (d > e) e = d;
    }
  // The entered limit, not CurConvLimit: a change during the run is shown and logged only.
  if (e > b_.TRefluxConvLimit) return false;
  result_.converged = true;
  result_.totalRefluxTime = b_.CalcTime;
  if (files_) WriteBatchConvergedState(s_);
  Profile();
  if (b_.BatchOpeType == 1) {
    ShowMessage(s_, BiText{"End of Calculation", "計算完了"});
    Log(t_, Same(" 計算完了"));
    result_.end = BatchRunEnd::TotalRefluxOnly;
    return true;
  }
  Notice(Pick(s_, BiText{"Total Reflux Converged", "全還流収束"}));
  Log(t_, Same(" 全還流収束"));
  b_.CalcPhase = 1;
  b_.TankCounter = 0;
  b_.TankRow = 1;
  b_.CurDistillate = b_.TankOperation[1][kTankDistillate];
  b_.QRebSet = b_.TankOperation[1][kTankDuty];
  b_.NextSaveTime = 0;
  t_ = 0;
  b_.CalcTime = 0;
  truncateHistory_ = true;
  for (int j = 1; j <= nc_; ++j) b_.TankContent[j] = 0;
  for (int i = 1; i <= n_; ++i) b_.HeatTotalTank[i] = 0;
  Profile();
  return false;
}

bool BatchRunner::TankTest() {
  if (!BatchTankChangeDue(s_)) return false;
  ChangeTank();
  if (b_.TanksExhausted > 0) {
    EndBatchCalculation();
    result_.end = BatchRunEnd::TanksExhausted;
    return true;
  }
  return false;
}

void BatchRunner::ChangeTank() {
  if (files_) WriteBatchTankRecord(s_);
  if (result_.tankCount < static_cast<int>(result_.tanks.size())) {
    auto& rec = result_.tanks[result_.tankCount++];
    rec.counter = b_.TankCounter;
    rec.time = b_.RunTime;
    rec.content = b_.TankContent;
  }
  if (b_.TankCounter >= b_.TankChangeCount) {
    b_.TanksExhausted = 1;
    Profile();
    return;
  }
  b_.TankCounter += 1;
  b_.TankRow = b_.TankCounter + 1;
  for (int j = 1; j <= nc_; ++j) b_.TankContent[j] = 0;
  for (int i = 1; i <= n_; ++i) b_.HeatTotalTank[i] = 0;
  const auto& row = b_.TankOperation[b_.TankRow];
  b_.CurRefluxRatio = row[kTankReflux];
  b_.CurDistillate = row[kTankDistillate];
  b_.QRebSet = row[kTankDuty];  // CurQReb, the duty in force, is not touched
  b_.TanksExhausted = 0;
  Notice(std::string(Pick(s_, BiText{"Change Tank", "製品タンク切替"})) + " " +
         std::to_string(b_.TankCounter));
  Log(t_, BiText{" Change Tank", " タンク切り替え"});
  Profile();
}

void BatchRunner::EndBatchCalculation() {
  ShowMessage(s_, BiText{"End of Calculation", "計算完了"});
  Log(t_, BiText{" End of Calculation", " 計算終了"});
  if (files_) WriteBatchEndFile(s_, true);
  b_.CalcStopFlag = -1;
}

bool BatchRunner::Step() {
  // 1.
  const double dt0 = b_.CurDiffTime;
  dt_ = dt0;
  b_.StepTime = dt_;
  b_.CalcTime = t_;
  b_.RunTime = t_;
  if (b_.CalcPhase == 0 || b_.BatchOpeType == 3) qr_ = b_.CurQReb;
  b_.ReboilerDuty = qr_;
  // 2.-5.
  Enthalpies();
  const double mTop = HoldupsAbove(t_);
  if (b_.CalcPhase != 0) Distillate(dt_);
  Still(dt_, mTop);
  // 6.
  if (b_.CalcPhase != 0 && b_.BatchOpeType == 2) {
    FlowsTopDown();
  } else {
    FlowsBottomUp();
  }
  b_.ReboilerDuty = qr_;
  // 7.
  ExtremesAndHeat(dt_);
  // 8.-9.
  bool failed = false;
  if (!Integrate(dt_, failed)) {
    // Cancel: the run ends at once, without the end file.
    ShowMessage(s_, BiText{"End of Calculation", "計算完了"});
    Log(t_, Same(" 計算完了"));
    result_.end = BatchRunEnd::Cancelled;
    return true;
  }
  // 10.-11.
  if (failed) {
    t_ -= dt_;
    dt_ /= 2;
  } else {
    for (int i = 1; i <= n_; ++i)
      for (int j = 1; j <= nc_; ++j) b_.LiqComp[i][j] = b_.VapComp[i][j];
  }
  b_.RunTime = t_;
  b_.StepTime = dt_;
  // 12.
  Equilibrium();
  // 14.
  if (b_.NextSaveTime - 1e-05 <= b_.CalcTime && b_.SaveInterval != 0) {
    if (files_) {
      bool truncate;
      if (b_.CalcPhase == 0) {
        truncate = b_.CalcStarted == 0 && b_.ContinueFromTReflux == 0;
      } else {
        truncate = truncateHistory_;
        truncateHistory_ = false;
      }
      WriteBatchHistoryRecord(s_, truncate);
    }
    Profile();
    b_.NextSaveTime += b_.SaveInterval;  // the entered interval, not CurSaveInterval
  }
  // 15.
  if (b_.CalcPhase == 0) {
    if (TotalRefluxTest()) return true;
  } else {
    if (TankTest()) return true;
  }
  return false;
}

BatchRunResult BatchRunner::Run() {
  Start();
  long long steps = 0;
  for (;;) {
    const int phaseAtStart = b_.CalcPhase;
    const bool ended = Step();
    ++steps;
    if (phaseAtStart == 0) {
      ++result_.totalRefluxSteps;
    } else {
      ++result_.productSteps;
    }
    if (ended) break;
    b_.CalcStarted = 1;
    t_ += dt_;
    b_.RunTime = t_;
    if (observer_) {
      BatchStepInfo info{steps, b_.CalcPhase, t_, dt_};
      observer_->Yield(s_, info);
    }
    if (b_.CalcStopFlag == 1) {
      if (b_.CalcPhase != 0) {
        ChangeTank();
        EndBatchCalculation();
      }
      b_.CalcStopFlag = -1;
      ShowMessage(s_, BiText{" Abort, end of calculation", " 中止により計算終了"});
      Log(t_, BiText{" Abort, end of calculation", " 中止により計算終了"});
      if (files_) WriteBatchEndFile(s_, false);
      result_.end = BatchRunEnd::Stopped;
      break;
    }
    if (b_.Holdup[n_] <= 0 || t_ > b_.MaxOpeTime) {
      b_.CalcStopFlag = -1;
      const BiText text{"Time over or Bottom Volume=0, end of calculation",
                        "時間オーバーまたは蒸留塔残り０で計算完了"};
      ShowMessage(s_, text);
      Log(t_, BiText{" Time over or Bottom Volume=0, end of calculation",
                     " 時間オーバーまたは蒸留塔残り０で計算完了"});
      if (files_) WriteBatchEndFile(s_, false);
      result_.end = BatchRunEnd::TimeOver;
      break;
    }
  }
  b_.RunTime = t_;
  return result_;
}

}  // namespace

BatchRunResult RunBatchCalculation(SharedCalcState& s, BatchRunObserver* observer,
                                   const BatchRunOptions& options) {
  if (s.NTray < 2 || s.NC < 1) {
    throw InputRefused("A batch run needs at least one component and two trays");
  }
  BatchRunner runner(s, observer, options);
  return runner.Run();
}

}  // namespace tervale
