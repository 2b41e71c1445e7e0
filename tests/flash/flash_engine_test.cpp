#include <gtest/gtest.h>

#include <cmath>

#include "flash/flash_engine.h"
#include "flash/flash_program.h"
#include "state/shared_state.h"
#include "state/units.h"
#include "thermo/equilibrium.h"

namespace tervale {
namespace {

std::unique_ptr<SharedCalcState> Example(int number) {
  auto s = MakeSharedCalcState();
  ResetFlashCase(*s);
  LoadFlashExample(*s, number);
  return s;
}

TEST(FlashEngine, MaterialBalanceClosesAcrossTheTwoPhaseRange) {
  auto s = Example(1);
  const Composition& z = s->Flash.FeedZ;
  const double p = ConvPressToBase(*s, 760);
  int twoPhase = 0;
  for (double t = 80; t <= 100; t += 0.5) {
    double vf = -7;
    CalcIsothermalFlashVF(*s, t, p, vf, z);
    Composition x{}, y{};
    SplitFlashComposition(*s, t, p, vf, z, y, x);
    ASSERT_GE(vf, 0) << t;
    ASSERT_LE(vf, 1) << t;
    double sx = 0, sy = 0;
    for (int i = 1; i <= 4; ++i) {
      sx += x[i];
      sy += y[i];
      // (1 - V/F) x + V/F y = z
      EXPECT_NEAR((1 - vf) * x[i] + vf * y[i], z[i], 2e-6) << t << " " << i;
    }
    EXPECT_NEAR(sx, 1.0, 1e-12);
    EXPECT_NEAR(sy, 1.0, 1e-12);
    if (vf > 0 && vf < 1) {
      ++twoPhase;
      for (int i = 1; i <= 4; ++i) EXPECT_NEAR(y[i], s->KValue[i] * x[i], 2e-6) << t;
    } else if (vf == 0) {
      EXPECT_EQ(x, z);  // all liquid: x is the feed
    } else {
      EXPECT_EQ(y, z);
    }
  }
  EXPECT_GT(twoPhase, 15);  // bubble point near 85 C, dew point near 96 C

  // At the bubble point found by the bubble routine the flash gives V/F 0 (or next to it).
  const double tb = CalcBubbleTemperature(*s, 80, p, z);
  double vf = 0.5;
  CalcIsothermalFlashVF(*s, tb + 1e-3, p, vf, z);
  EXPECT_LT(vf, 1e-3);
}

// K near 10 and 0.1 from Psat 10^4 and 10^2 mmHg at 1000 mmHg.
void SetTenAndATenth(SharedCalcState& s, double& p) {
  ResetFlashCase(s);
  s.NC = 2;
  s.Comp.AntoineA[1] = 4;
  s.Comp.AntoineA[2] = 2;
  s.Comp.AntoineC[1] = s.Comp.AntoineC[2] = 100;
  p = 1000 / kMmHgPerMPa;
}

// Moves z1 (and with it z2 = 1 - z1) by single steps until the sum the flash tests equals 1
// exactly.
Composition FeedWithSumExactlyOne(const SharedCalcState& s, double z1, bool overK) {
  auto sumOf = [&](const Composition& z) {
    const double sz = z[1] + z[2];
    const double f1 = z[1] / sz, f2 = z[2] / sz;
    return overK ? 0 + f1 / s.KValue[1] + f2 / s.KValue[2]
                 : 0 + f1 * s.KValue[1] + f2 * s.KValue[2];
  };
  double up = z1, down = z1;
  for (int step = 0; step < 20000; ++step) {
    for (double c : {up, down}) {
      double z2 = 1 - c;
      for (int k = 0; k < 16; ++k) z2 = std::nextafter(z2, 0.0);
      for (int k = 0; k < 32; ++k, z2 = std::nextafter(z2, 1.0)) {
        const Composition z{0, c, z2};
        if (sumOf(z) == 1.0) return z;
      }
    }
    up = std::nextafter(up, 1.0);
    down = std::nextafter(down, 0.0);
  }
  return {};
}

TEST(FlashEngine, BoundariesOfTheTwoSums) {
  auto s = MakeSharedCalcState();
  double p = 0;
  SetTenAndATenth(*s, p);
  double vf = 0.5;
  CalcIsothermalFlashVF(*s, 20, p, vf, Composition{0, 0.5, 0.5});
  ASSERT_DOUBLE_EQ(s->KValue[1], 10.0);
  ASSERT_DOUBLE_EQ(s->KValue[2], 0.1);

  // S1 = sum f K exactly 1: all liquid.
  Composition z = FeedWithSumExactlyOne(*s, 1.0 / 11, false);
  ASSERT_NE(z[1], 0.0);
  vf = 0.5;
  CalcIsothermalFlashVF(*s, 20, p, vf, z);
  EXPECT_EQ(vf, 0.0);

  // S2 = sum f / K exactly 1: all vapour.
  z = FeedWithSumExactlyOne(*s, 10.0 / 11, true);
  ASSERT_NE(z[1], 0.0);
  vf = 0.5;
  CalcIsothermalFlashVF(*s, 20, p, vf, z);
  EXPECT_EQ(vf, 1.0);

  // Every K exactly 1: S1 = S2 = 1 and the first test wins, V/F 0. Search a vapour pressure
  // 10^A that some pressure in MPa turns into exactly the same mmHg figure.
  double a = 3.0, pk = 0;
  for (int i = 0; i < 100000 && pk == 0; ++i, a = std::nextafter(a, 4.0)) {
    const double target = std::pow(10.0, a);
    double q = target / kMmHgPerMPa;
    for (double c : {q, std::nextafter(q, 0.0), std::nextafter(q, 1.0)})
      if (c * kMmHgPerMPa == target) pk = c;
    if (pk != 0) break;
  }
  ASSERT_NE(pk, 0.0);
  s->Comp.AntoineA[1] = s->Comp.AntoineA[2] = a;
  vf = 0.5;
  CalcIsothermalFlashVF(*s, 20, pk, vf, Composition{0, 0.5, 0.5});
  EXPECT_EQ(s->KValue[1], 1.0);
  EXPECT_EQ(vf, 0.0);

  // An empty feed leaves V/F untouched.
  vf = 0.25;
  CalcIsothermalFlashVF(*s, 20, p, vf, Composition{});
  EXPECT_EQ(vf, 0.25);

  // A feed barely inside the two-phase region near the dew point: the 0.8 start steps past 1,
  // is held at 0.999999 and goes on to the answer.
  s->Comp.AntoineA[1] = 4;
  s->Comp.AntoineA[2] = 2;
  z = {0, 0.9, 0.1};  // the first Newton step from 0.8 lands near 1.115
  CalcIsothermalFlashVF(*s, 20, p, vf, z);
  EXPECT_NEAR(vf, 8.01 / 8.1, 1e-6);
  double g = 0;
  for (int i = 1; i <= 2; ++i) g += (1 - s->KValue[i]) * z[i] / ((s->KValue[i] - 1) * vf + 1);
  EXPECT_NEAR(g, 0, 1e-6);
}

TEST(FlashEngine, SplitBranchesAndMessages) {
  auto s = Example(1);
  RecordingDialogs dialogs;
  s->Dialogs = &dialogs;
  const Composition& z = s->Flash.FeedZ;
  s->KValue = {0, 4.0, 1.5, 0.7, 2.0};
  Composition x{}, y{};

  // V/F 1E-06 takes the general branch: x is not the feed itself.
  SplitFlashComposition(*s, 0, 0, 1E-06, z, y, x);
  double sl = 0, sv = 0;
  Composition l{}, v{};
  for (int i = 1; i <= 4; ++i) {
    l[i] = (1 - 1E-06) * z[i] / ((s->KValue[i] - 1) * 1E-06 + 1);
    v[i] = z[i] - l[i];
    sl += l[i];
    sv += v[i];
  }
  bool differs = false;
  for (int i = 1; i <= 4; ++i) {
    EXPECT_DOUBLE_EQ(x[i], l[i] / sl);
    EXPECT_DOUBLE_EQ(y[i], v[i] / sv);
    differs = differs || x[i] != z[i];
  }
  EXPECT_TRUE(differs);

  // V/F exactly 0 and 1.
  SplitFlashComposition(*s, 0, 0, 0.0, z, y, x);
  EXPECT_EQ(x, z);
  EXPECT_DOUBLE_EQ(y[1], 4.0 * 0.12 / (4.0 * 0.12 + 1.5 * 0.01 + 0.7 * 0.85 + 2.0 * 0.02));
  SplitFlashComposition(*s, 0, 0, 1.0, z, y, x);
  EXPECT_EQ(y, z);
  EXPECT_DOUBLE_EQ(x[3], (0.85 / 0.7) / (0.12 / 4.0 + 0.01 / 1.5 + 0.85 / 0.7 + 0.02 / 2.0));
  EXPECT_TRUE(dialogs.messages.empty());

  // Out of range: the message, arrays unchanged.
  const Composition x0 = x, y0 = y;
  SplitFlashComposition(*s, 0, 0, 1.5, z, y, x);
  SplitFlashComposition(*s, 0, 0, -0.1, z, y, x);
  EXPECT_EQ(x, x0);
  EXPECT_EQ(y, y0);
  ASSERT_EQ(dialogs.messages.size(), 2u);
  EXPECT_EQ(dialogs.messages[0], "V/Fが<0 or >1です");

  // The equation-of-state methods have no flash: message, V/F 0, K 1.
  s->KValueMethod = 5;
  double vf = 0.3;
  CalcIsothermalFlashVF(*s, 90, 0.1, vf, z);
  EXPECT_EQ(vf, 0.0);
  for (int i = 1; i <= 4; ++i) EXPECT_EQ(s->KValue[i], 1.0);
  EXPECT_EQ(dialogs.messages.back(), "S-R-K / P-Rの式は未だありません");
}

}  // namespace
}  // namespace tervale
