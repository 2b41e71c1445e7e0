// tervale-cli purecomp: pure-component property estimation from a JSON case file;
// tervale-cli example purecomp -o FILE: writes the built-in case (n-hexane).
#include <cmath>
#include <iostream>

#include "cli/command_registry.h"
#include "cli/example_registry.h"
#include "cli/json_case_file.h"
#include "cli/json_case_readers.h"
#include "io/display_format.h"
#include "purecomp/pure_engine.h"
#include "state/errors.h"

namespace tervale::cli {
namespace {

constexpr const char* kMethodWords[][4] = {
    {"lydersen", "ambrose", "joback", "klincewicz-reid"},
    {"edmister", "lee-kesler", nullptr, nullptr},
    {"riedel-plank-miller", "pitzer", "lee-kesler", nullptr},
    {"rihani-doraiswamy", "none", nullptr, nullptr},
    {"rowlinson-bondi", "lyman-danner", nullptr, nullptr},
    {"gunn-yamada", "spencer-danner", nullptr, nullptr},
};
constexpr const char* kMethodKeys[] = {"critical", "omega",     "vapour_pressure",
                                       "cp_ideal", "cp_liquid", "liquid_density"};

[[noreturn]] void Bad(const std::string& what) {
  throw InputRefused("Pure-component case: " + what);
}

double NumberField(const Json& object, const char* key, const std::string& where) {
  const Json& v = object.at(key);
  if (!v.is_number()) Bad(where + key + " must be a number");
  const double d = v.get<double>();
  if (!std::isfinite(d)) Bad(where + key + " must be a finite number");
  return d;
}

// An optional number: absent or null is a blank field.
bool OptionalNumber(const Json& object, const char* key, const std::string& where, double& out) {
  if (!object.contains(key) || object.at(key).is_null()) return false;
  out = NumberField(object, key, where);
  return true;
}

double RequiredNumber(const Json& object, const char* key, const std::string& where) {
  if (!object.contains(key)) Bad(where + key + " is missing");
  return NumberField(object, key, where);
}

// Reads a case into the state's choices and counts and the screen's fields. The state is
// touched only when the whole case has been read.
void ReadPureCase(const Json& c, SharedCalcState& s, PureComponentInput& in) {
  CheckCaseProgram(c, "purecomp", "Pure-component case");
  CheckCaseKeys(c,
                {"program", "name", "mol_weight", "total_atoms", "tb_c", "temp_low_c",
                 "temp_high_c", "methods", "cp0", "lyman_danner", "spencer_danner", "groups"},
                "Pure-component case");
  PureComponentInput input;
  if (c.contains("name")) {
    if (!c["name"].is_string()) Bad("name must be a string");
    input.Name = c["name"].get<std::string>();
  }
  input.MolWeight = RequiredNumber(c, "mol_weight", "");
  if (!(input.MolWeight > 0)) Bad("mol_weight must be above 0 (g/mol)");
  const double atoms = c.contains("total_atoms") ? NumberField(c, "total_atoms", "") : 0.0;
  if (atoms < 0 || atoms > 10000 || atoms != std::floor(atoms))
    Bad("total_atoms must be a whole number from 0 to 10000");
  input.TotalAtom = static_cast<int>(atoms);
  input.HasTbC = OptionalNumber(c, "tb_c", "", input.TbC);
  input.TempLow = RequiredNumber(c, "temp_low_c", "");
  input.TempHigh = RequiredNumber(c, "temp_high_c", "");

  PureComponentMethods methods;
  int* slots[] = {&methods.TcPcVc,  &methods.Omega,    &methods.VaporPress,
                  &methods.CpIdeal, &methods.CpLiquid, &methods.LiqDensity};
  if (c.contains("methods")) {
    const Json& m = c["methods"];
    if (!m.is_object()) Bad("methods must be an object");
    for (auto it = m.begin(); it != m.end(); ++it) {
      int which = -1;
      for (int k = 0; k < 6; ++k)
        if (it.key() == kMethodKeys[k]) which = k;
      if (which < 0) Bad("methods: unknown key \"" + it.key() + "\"");
      int choice = -1;
      if (it.value().is_string()) {
        for (int j = 0; j < 4; ++j)
          if (kMethodWords[which][j] && it.value() == kMethodWords[which][j]) choice = j;
      }
      if (choice < 0) {
        std::string words;
        for (int j = 0; j < 4 && kMethodWords[which][j]; ++j)
          words += std::string(j ? ", " : "") + kMethodWords[which][j];
        Bad("methods." + it.key() + " must be one of " + words);
      }
      *slots[which] = choice;
    }
  }

  std::array<double, 5> cp0 = s.PureComp.PropCp0;
  if (c.contains("cp0")) {
    const Json& v = c["cp0"];
    if (!v.is_array() || v.size() != 4) Bad("cp0 must be a list of 4 numbers [A, B, C, D]");
    for (int k = 0; k < 4; ++k) {
      if (!v[k].is_number() || !std::isfinite(v[k].get<double>()))
        Bad("cp0 must be a list of 4 numbers [A, B, C, D]");
      cp0[k + 1] = v[k].get<double>();
    }
  }
  if (c.contains("lyman_danner")) {
    const Json& v = c["lyman_danner"];
    if (!v.is_object()) Bad("lyman_danner must be an object {\"R\", \"K\"}");
    CheckCaseKeys(v, {"R", "K"}, "Pure-component case: lyman_danner");
    input.HasCpL_R = OptionalNumber(v, "R", "lyman_danner.", input.CpL_R);
    input.HasCpL_K = OptionalNumber(v, "K", "lyman_danner.", input.CpL_K);
  }
  if (c.contains("spencer_danner")) {
    const Json& v = c["spencer_danner"];
    if (!v.is_object()) Bad("spencer_danner must be an object {\"rho_ref\", \"t_ref_c\"}");
    CheckCaseKeys(v, {"rho_ref", "t_ref_c"}, "Pure-component case: spencer_danner");
    input.HasLiqD_Dref = OptionalNumber(v, "rho_ref", "spencer_danner.", input.LiqD_Dref);
    input.HasLiqD_Tref = OptionalNumber(v, "t_ref_c", "spencer_danner.", input.LiqD_Tref);
  }

  auto counts = s.PureComp.GroupCount;
  if (c.contains("groups")) {
    const Json& g = c["groups"];
    if (!g.is_object()) Bad("groups must be an object keyed by method");
    for (auto it = g.begin(); it != g.end(); ++it) {
      const GroupTable* table = FindGroupTable(it.key());
      if (!table) Bad("groups: unknown method \"" + it.key() + "\"");
      const std::string where = "groups." + it.key();
      if (!it.value().is_array()) Bad(where + " must be a list of [row, count] pairs");
      GroupCountArray row{};
      std::array<bool, kMaxGroupRows + 1> seen{};
      const int nRows = static_cast<int>(table->rows.size());
      for (const Json& pair : it.value()) {
        if (!pair.is_array() || pair.size() != 2 || !pair[0].is_number() || !pair[1].is_number())
          Bad(where + " must be a list of [row, count] pairs of numbers");
        const double r = pair[0].get<double>();
        if (r != std::floor(r) || r < 1 || r > nRows)
          Bad(where + ": row " + pair[0].dump() + " is not a row of the table (1 to " +
              std::to_string(nRows) + ")");
        const int ri = static_cast<int>(r);
        if (table->rows[ri - 1].heading)
          Bad(where + ": row " + std::to_string(ri) + " (\"" +
              std::string(table->rows[ri - 1].text) + "\") is a heading and takes no count");
        if (seen[ri]) Bad(where + ": row " + std::to_string(ri) + " is given twice");
        seen[ri] = true;
        const double n = pair[1].get<double>();
        if (!std::isfinite(n) || std::abs(n) > 10000)
          Bad(where + ": the count of row " + std::to_string(ri) + " must be within -10000..10000");
        row[ri] = static_cast<int>(std::floor(n));  // the grid truncates with Int
      }
      counts[static_cast<int>(table->method)] = row;
    }
  }

  s.PureComp.Methods = methods;
  s.PureComp.PropCp0 = cp0;
  s.PureComp.GroupCount = counts;
  in = input;
}

Json ExampleCase() {
  // n-Hexane, C6H14: 2 CH3 and 4 CH2 in every method's terms; normal boiling point 68.73 C,
  // liquid density 0.6594 g/cc at 20 C.
  return Json{
      {"program", "purecomp"},
      {"name", "n-Hexane"},
      {"mol_weight", 86.177},
      {"total_atoms", 20},
      {"tb_c", 68.73},
      {"temp_low_c", 0},
      {"temp_high_c", 200},
      {"methods",
       {{"critical", "joback"},
        {"omega", "lee-kesler"},
        {"vapour_pressure", "lee-kesler"},
        {"cp_ideal", "rihani-doraiswamy"},
        {"cp_liquid", "rowlinson-bondi"},
        {"liquid_density", "gunn-yamada"}}},
      {"cp0", {0, 0, 0, 0}},
      {"lyman_danner", {{"R", nullptr}, {"K", nullptr}}},
      {"spencer_danner", {{"rho_ref", 0.6594}, {"t_ref_c", 20}}},
      {"groups",
       {{"lydersen", {{1, 6}}},
        {"ambrose", {{1, 6}}},
        {"joback", {{2, 2}, {3, 4}}},
        {"klincewicz-reid", {{1, 2}, {2, 4}}},
        {"fedors", {{1, 2}, {2, 4}}},
        {"rihani-doraiswamy", {{2, 2}, {3, 4}}}}},
  };
}

Json Coefficients(CliContext& ctx, const double* first, int n, const char* what) {
  Json list = Json::array();
  for (int k = 0; k < n; ++k) list.push_back(JsonNumber(ctx, first[k], what));
  return list;
}

Json ResultJson(CliContext& ctx) {
  const auto& p = ctx.s().PureComp;
  Json grid = Json::array();
  for (int i = 1; i <= kGridPoints; ++i) {
    grid.push_back(Json{
        {"t", JsonNumber(ctx, p.GridTempC[i], "grid t")},
        {"T", JsonNumber(ctx, p.GridTempK[i], "grid T")},
        {"p", JsonNumber(ctx, p.GridVaporPress[i], "grid p")},
        {"hv", p.GridHasHv[i] ? JsonNumber(ctx, p.GridHv[i], "grid hv") : Json(nullptr)},
        {"cpl", p.GridHasCpL[i] ? JsonNumber(ctx, p.GridCpL[i], "grid cpl") : Json(nullptr)},
        {"density",
         p.GridHasDen[i] ? JsonNumber(ctx, p.GridDen[i], "grid density") : Json(nullptr)},
    });
  }
  return Json{
      {"name", p.PropName},
      {"Tc", JsonNumber(ctx, p.PropTc, "Tc")},
      {"Pc", JsonNumber(ctx, p.PropPc, "Pc")},
      {"Vc", JsonNumber(ctx, p.PropVc, "Vc")},
      {"Tb", JsonNumber(ctx, p.PropTbK, "Tb")},
      {"omega", JsonNumber(ctx, p.PropOmega, "omega")},
      {"antoine",
       {JsonNumber(ctx, p.PropAntoineA, "Antoine A"), JsonNumber(ctx, p.PropAntoineB, "Antoine B"),
        JsonNumber(ctx, p.PropAntoineC, "Antoine C")}},
      {"cp0", Coefficients(ctx, &p.PropCp0[1], 4, "cp0")},
      {"cpl", Coefficients(ctx, &p.PropCpL[1], 3, "cpl")},
      {"hv", Coefficients(ctx, &p.PropHv[1], 3, "hv")},
      {"density_poly", Coefficients(ctx, &p.PropDenPoly[1], 3, "density_poly")},
      {"rackett",
       {JsonNumber(ctx, p.PropDenRackettA, "Rackett A"),
        JsonNumber(ctx, p.PropDenRackettB, "Rackett B")}},
      {"zra", JsonNumber(ctx, p.PropZra, "Zra")},
      {"grid", std::move(grid)},
  };
}

void PrintText(const PureComponentEstimate& p) {
  using io::FormatNumber;
  auto e = [](double v) { return FormatNumber(v, "#.#000000E+##"); };
  std::cout << "Name  " << p.PropName << '\n'
            << "Tb    " << FormatNumber(p.PropTbK, "####.000") << " K\n"
            << "Tc    " << FormatNumber(p.PropTc, "####.000") << " K\n"
            << "Pc    " << FormatNumber(p.PropPc, "###.000") << '\n'
            << "Vc    " << FormatNumber(p.PropVc, "###.000") << " cc/mol\n"
            << "omega " << FormatNumber(p.PropOmega, "##.000000") << '\n'
            << "Antoine A, B, C  " << FormatNumber(p.PropAntoineA, "####.00000") << "  "
            << FormatNumber(p.PropAntoineB, "####.00000") << "  "
            << FormatNumber(p.PropAntoineC, "####.00000") << '\n'
            << "Cp0 A..D   " << e(p.PropCp0[1]) << "  " << e(p.PropCp0[2]) << "  "
            << e(p.PropCp0[3]) << "  " << e(p.PropCp0[4]) << '\n'
            << "CpL A..C   " << e(p.PropCpL[1]) << "  " << e(p.PropCpL[2]) << "  "
            << e(p.PropCpL[3]) << '\n'
            << "Hv A..C    " << e(p.PropHv[1]) << "  " << e(p.PropHv[2]) << "  " << e(p.PropHv[3])
            << '\n'
            << "rhoL A..C  " << e(p.PropDenPoly[1]) << "  " << e(p.PropDenPoly[2]) << "  "
            << e(p.PropDenPoly[3]) << '\n'
            << "Rackett A, B  " << e(p.PropDenRackettA) << "  " << e(p.PropDenRackettB) << '\n'
            << "Zra   " << FormatNumber(p.PropZra, "#.00000") << '\n';
}

ExampleRegistrar example({"purecomp",
                          "Pure-component estimation (n-hexane)",
                          {1},
                          1,
                          [](CliContext& ctx, int, const std::filesystem::path& out) {
                            return WriteExampleText(ctx, out, ExampleCase().dump(2) + "\n");
                          }});

CommandRegistrar reg(80, [](CLI::App& app, CliContext& ctx) {
  auto* cmd = app.add_subcommand("purecomp", "Estimate pure-component properties from a case");
  static std::string file;
  cmd->add_option("file", file, "The JSON case file")->required();
  cmd->callback([&ctx] {
    ctx.action = [&ctx] {
      auto& s = ctx.s();
      PureComponentInput input;
      ReadPureComponentCaseFile(file, s, input);
      RunPureComponentEstimation(s, input);
      if (ctx.json) {
        PrintJson(ctx, ResultJson(ctx));
      } else {
        PrintText(s.PureComp);
      }
      return 0;
    };
  });
});

}  // namespace

void ReadPureComponentCaseFile(const std::string& file, SharedCalcState& s,
                               PureComponentInput& in) {
  try {
    ReadPureCase(LoadJsonCase(file), s, in);
  } catch (const InputRefused& e) {
    // Every refusal names the file it came from.
    const std::string m = e.what();
    throw InputRefused(m.find(file) == std::string::npos ? file + ": " + m : m);
  }
}

}  // namespace tervale::cli
