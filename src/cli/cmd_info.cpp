// A stand-in subcommand so that the frame is usable before the programs land.
#include <iostream>

#include "cli/command_registry.h"
#include "state/units.h"

namespace tervale::cli {
namespace {

CommandRegistrar reg(1000, [](CLI::App& app, CliContext& ctx) {
  auto* cmd = app.add_subcommand("units", "Convert a value between the units of the suite");
  static std::string kind = "temp";
  static double value = 0;
  static int unit = 1;
  cmd->add_option("kind", kind, "temp or press")
      ->check(CLI::IsMember({"temp", "press"}))
      ->required();
  cmd->add_option("value", value, "the value in the chosen unit")->required();
  cmd->add_option("--unit", unit, "TempUnit 1..3 or PressUnit 1..6");
  cmd->callback([&ctx] {
    ctx.action = [&ctx] {
      auto& s = ctx.s();
      double base = 0;
      if (kind == "temp") {
        s.Unit.TempUnit = unit;
        base = ConvTempToBase(s, value);
      } else {
        s.Unit.PressUnit = unit;
        base = ConvPressToBase(s, value);
      }
      if (ctx.json) {
        PrintJson(ctx, Json{{"kind", kind}, {"value", value}, {"unit", unit}, {"base", base}});
      } else {
        std::cout << base << (kind == "temp" ? " C" : " MPa") << '\n';
      }
      return 0;
    };
  });
});

}  // namespace
}  // namespace tervale::cli
