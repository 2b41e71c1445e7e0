// The flash program on the command line: `flash FILE --calc ...` and `example flash 1|2`.
#include <cmath>
#include <iostream>
#include <optional>

#include "cli/command_registry.h"
#include "cli/csv_tables.h"
#include "cli/example_registry.h"
#include "flash/flash_program.h"
#include "io/display_format.h"
#include "state/errors.h"

namespace tervale::cli {
namespace {

const char* TempUnitName(int u) {
  switch (u) {
    case 1:
      return "C";
    case 2:
      return "K";
    case 3:
      return "F";
    default:
      return "?";
  }
}
const char* PressUnitName(int u) {
  static const char* names[] = {"?", "MPa", "KPa", "mmHg", "mmH2O", "Kgf/cm2", "PSIA"};
  return (u >= 1 && u <= 6) ? names[u] : "?";
}
const char* HeatUnitName(int u) {
  return u == 1 ? "J" : u == 2 ? "Kcal" : "?";
}

int CalcTypeOf(const std::string& word) {
  static const char* words[] = {"bubble-t", "dew-t", "bubble-p", "dew-p", "flash", "curve"};
  for (int i = 0; i < 6; ++i)
    if (word == words[i]) return i;
  return -1;
}

ExampleRegistrar flashExamples(
    {"flash",
     "Flash calculation: 1 methanol/ethanol/water/1-propanol (Wilson), 2 ethane/propane/n-butane "
     "(S-R-K)",
     {1, 2},
     1,
     [](CliContext& ctx, int number, const std::filesystem::path& out) {
       auto& s = ctx.s();
       ResetFlashCase(s);
       LoadFlashExample(s, number);
       WriteFlashFile(s, out);
       std::cerr << "Wrote flash example " << number << " to " << out.string() << '\n';
       if (ctx.json)
         PrintJson(ctx, Json{{"kind", "flash"}, {"number", number}, {"file", out.string()}});
       return 0;
     }});

struct FlashOptions {
  std::string file;
  std::string calc;
  std::string temp, temp2, press;
  CLI::Option* tempOpt = nullptr;
  CLI::Option* temp2Opt = nullptr;
  CLI::Option* pressOpt = nullptr;
};

// The text shows the formatted strings, so a failed calculation (a zero pressure, an empty feed)
// is reported here once instead of leaving a bare NaN or Infinity on the screen.
void WarnNonFiniteResult(CliContext& ctx, const FlashResult& r) {
  bool finite = std::isfinite(r.temperature) && std::isfinite(r.pressure) && std::isfinite(r.vf);
  for (int i = 1; i <= ctx.s().NC; ++i)
    finite = finite && std::isfinite(r.x[i]) && std::isfinite(r.y[i]) && std::isfinite(r.k[i]) &&
             std::isfinite(r.gamma[i]);
  if (!finite)
    ctx.dialogs.Message(
        "The flash gave numbers that are not finite (check the pressure and the feed "
        "composition)");
}

void PrintCalculationText(CliContext& ctx, const std::string& calc, const FlashResult& r) {
  const SharedCalcState& s = ctx.s();
  WarnNonFiniteResult(ctx, r);
  io::ReportTable t;
  t.columns = {"Component", "Vapour y", "Liquid x", "K", "Gamma"};
  for (int i = 1; i <= s.NC; ++i)
    t.rows.push_back({s.Comp.CompName[i], r.yText[i], r.xText[i], r.kText[i],
                      io::FormatNumber(r.gamma[i], "#0.#00000")});
  if (ctx.csv) {  // the component table alone, as a spreadsheet reads it
    PrintTable(ctx, t);
    return;
  }
  std::cout << "Flash calculation: " << calc << "  (" << s.NC << " components, K-value method "
            << s.KValueMethod << ")\n";
  std::cout << "Temperature: " << r.temperatureText << " " << TempUnitName(s.Unit.TempUnit) << '\n';
  std::cout << "Pressure:    " << r.pressureText << " " << PressUnitName(s.Unit.PressUnit) << '\n';
  std::cout << "V/F:         " << r.vfText << "\n\n";
  PrintTable(ctx, t);
  if (r.hasEnthalpy) {
    std::cout << "\nEnthalpy (" << HeatUnitName(s.Unit.HeatUnit) << "/Kgmol)\n";
    std::cout << "  Feed:   " << r.hFeedText << '\n';
    std::cout << "  Vapour: " << r.hVapourText << '\n';
    std::cout << "  Liquid: " << r.hLiquidText << '\n';
  }
}

int RunFlashCommand(CliContext& ctx, FlashOptions& o) {
  auto& s = ctx.s();
  const int calcType = CalcTypeOf(o.calc);
  Json refused{{"calc", o.calc}};
  if (calcType < 0)
    return Refuse(ctx,
                  "Option --calc: unknown calculation \"" + o.calc +
                      "\" (bubble-t, dew-t, bubble-p, dew-p, flash, curve)",
                  refused);
  ResetFlashCase(s);
  try {
    ReadFlashFile(s, o.file);
  } catch (const TervaleError& e) {
    return Refuse(ctx, e.what(), refused);
  }
  s.Flash.CalcType = calcType;

  // A value given to an option must be a number; for the curve an empty value (or none) is a
  // blank limit.
  auto number = [&](const std::string& option, CLI::Option* opt, const std::string& text,
                    bool blankAllowed, std::optional<double>& out) -> bool {
    out.reset();
    if (opt->count() == 0) return true;
    if (text.empty() && blankAllowed) return true;
    if (text.find_first_not_of(" \t") == std::string::npos) {
      ctx.dialogs.Message("Option " + option + ": not a number: \"" + text + "\"");
      return false;
    }
    double v = 0;
    if (!ParseOptionNumber(ctx, option, text, v)) return false;
    out = v;
    return true;
  };
  std::optional<double> temp, temp2, press;
  const bool curve = calcType == 5;
  if (!number("--temp", o.tempOpt, o.temp, curve, temp) ||
      !number("--temp2", o.temp2Opt, o.temp2, curve, temp2) ||
      !number("--press", o.pressOpt, o.press, false, press)) {
    if (ctx.json) PrintJson(ctx, refused);
    return 2;
  }
  const double p = press.value_or(s.Flash.FlashPress);

  if (curve) {
    const CondensingCurve c = CalcCondensingCurve(s, temp, temp2, p);
    if (ctx.json) {
      Json points = Json::array();
      if (c.drawn) {
        for (int i = 1; i <= kCurvePoints; ++i) {
          points.push_back({{"t", JsonNumber(ctx, c.t[i], "t")},
                            {"vf", JsonNumber(ctx, c.vf[i], "vf")},
                            {"h", c.hasEnthalpy ? JsonNumber(ctx, c.h[i], "h") : Json(nullptr)}});
        }
      }
      PrintJson(
          ctx,
          Json{{"calc", o.calc},
               {"pressure", JsonNumber(ctx, c.pressure, "pressure")},
               {"bubble_t", JsonNumber(ctx, c.bubbleT, "bubble_t")},
               {"dew_t", JsonNumber(ctx, c.dewT, "dew_t")},
               {"h_bubble", c.hasEnthalpy ? JsonNumber(ctx, c.hBubble, "h_bubble") : Json(nullptr)},
               {"h_dew", c.hasEnthalpy ? JsonNumber(ctx, c.hDew, "h_dew") : Json(nullptr)},
               {"t_low", JsonNumber(ctx, c.tLow, "t_low")},
               {"t_high", JsonNumber(ctx, c.tHigh, "t_high")},
               {"points", std::move(points)}});
    } else if (ctx.csv) {
      PrintTable(ctx, CondensingCurveTable(c));
    } else {
      std::cout << "Condensing curve at " << io::FormatNumber(c.pressure, " ###0.000") << " "
                << PressUnitName(s.Unit.PressUnit) << '\n';
      std::cout << "Bubble point: " << io::FormatNumber(c.bubbleT, " ###0.000")
                << "   Dew point: " << io::FormatNumber(c.dewT, " ###0.000") << '\n';
      std::cout << "Limits: " << io::FormatNumber(c.tLow, " ###0.000") << " to "
                << io::FormatNumber(c.tHigh, " ###0.000") << "\n\n";
      if (c.drawn) {
        std::cout << "   i           t      V/F           H\n";
        for (int i = 1; i <= kCurvePoints; ++i) {
          char line[128];
          std::snprintf(line, sizeof line, "%4d  %10.4f  %7.5f  %s\n", i, c.t[i], c.vf[i],
                        c.hasEnthalpy ? io::FormatNumber(c.h[i], "#.#0000E+#0").c_str() : "");
          std::cout << line;
        }
      }
    }
    return c.drawn ? 0 : 2;
  }

  const double t = temp.value_or(s.Flash.FlashTemp);
  const FlashResult r = RunFlashCalculation(s, calcType, t, p);
  if (ctx.json) {
    Json names = Json::array();
    for (int i = 1; i <= s.NC; ++i) names.push_back(s.Comp.CompName[i]);
    const bool eos = s.KValueMethod == 4 || s.KValueMethod == 5;
    Json enthalpy = nullptr;
    if (r.hasEnthalpy)
      enthalpy = {
          {"feed", JsonNumber(ctx, r.hFeed, "feed enthalpy")},
          {"vapour", r.showVapourH ? JsonNumber(ctx, r.hVapour, "vapour enthalpy") : Json(nullptr)},
          {"liquid",
           r.showLiquidH ? JsonNumber(ctx, r.hLiquid, "liquid enthalpy") : Json(nullptr)}};
    PrintJson(ctx,
              Json{{"calc", o.calc},
                   {"temperature", JsonNumber(ctx, r.temperature, "temperature")},
                   {"pressure", JsonNumber(ctx, r.pressure, "pressure")},
                   {"vf", JsonNumber(ctx, r.vf, "vf")},
                   {"components", std::move(names)},
                   {"x", JsonComponents(ctx, r.x, s.NC, "x")},
                   {"y", JsonComponents(ctx, r.y, s.NC, "y")},
                   {"k", JsonComponents(ctx, r.k, s.NC, "k")},
                   {"gamma", eos ? Json(nullptr) : JsonComponents(ctx, r.gamma, s.NC, "gamma")},
                   {"enthalpy", std::move(enthalpy)},
                   {"units",
                    {{"temperature", TempUnitName(s.Unit.TempUnit)},
                     {"pressure", PressUnitName(s.Unit.PressUnit)},
                     {"heat", HeatUnitName(s.Unit.HeatUnit)}}}});
  } else if (ctx.csv) {
    PrintTable(ctx, FlashResultTable(s, r));
  } else {
    PrintCalculationText(ctx, o.calc, r);
  }
  return 0;
}

CommandRegistrar reg(30, [](CLI::App& app, CliContext& ctx) {
  auto* cmd = app.add_subcommand("flash", "Flash calculation of a flash data file");
  static FlashOptions o;
  cmd->add_option("file", o.file, "Flash data file")->required();
  cmd->add_option("--calc", o.calc, "bubble-t, dew-t, bubble-p, dew-p, flash or curve")->required();
  o.tempOpt = cmd->add_option("--temp", o.temp,
                              "Temperature (curve: lower limit), case's unit; default the case's");
  o.temp2Opt = cmd->add_option("--temp2", o.temp2, "Upper temperature limit of the curve");
  o.pressOpt = cmd->add_option("--press", o.press, "Pressure, case's unit; default the case's");
  cmd->callback([&ctx] { ctx.action = [&ctx] { return RunFlashCommand(ctx, o); }; });
});

}  // namespace
}  // namespace tervale::cli
