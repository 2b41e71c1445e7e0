#include "cli/beyond_output.h"

#include <iostream>

#include "io/record_writer.h"
#include "regress/vle_case.h"

namespace tervale::cli {
namespace {

Json Optional(CliContext& ctx, const std::optional<double>& v, std::string_view what) {
  if (!v) return nullptr;
  return JsonNumber(ctx, *v, what);
}

std::string Text(double v) {
  return io::FormatShortest(v);
}

}  // namespace

Json AzeotropesJson(CliContext& ctx, const std::vector<Azeotrope>& list) {
  Json out = Json::array();
  for (const Azeotrope& a : list)
    out.push_back({{"x1", JsonNumber(ctx, a.x1, "azeotrope x1")},
                   {"tp", JsonNumber(ctx, a.tp, "azeotrope tp")},
                   {"kind", std::string(AzeotropeKind(a))}});
  return out;
}

void PrintAzeotropesText(const std::vector<Azeotrope>& list, std::string_view tpLabel,
                         std::string_view unit) {
  if (list.empty()) {
    std::cout << "No azeotrope\n";
    return;
  }
  for (const Azeotrope& a : list)
    std::cout << "Azeotrope: x1 = " << Text(a.x1) << ", " << tpLabel << " = " << Text(a.tp) << ' '
              << unit << ", " << AzeotropeKind(a) << '\n';
}

Json StatisticsJson(CliContext& ctx, const VLEStatistics& st) {
  for (const auto& m : st.messages) ctx.dialogs.Message(m);
  Json errors = nullptr;
  if (st.stdError12 && st.stdError21)
    errors = Json::array({JsonNumber(ctx, *st.stdError12, "std_errors"),
                          JsonNumber(ctx, *st.stdError21, "std_errors")});
  Json rows = Json::array();
  for (const VLEResidualRow& r : st.residuals)
    rows.push_back({{"x", JsonNumber(ctx, r.x, "residual x")},
                    {"y_meas", JsonNumber(ctx, r.yMeasured, "y_meas")},
                    {"y_calc", JsonNumber(ctx, r.yCalculated, "y_calc")},
                    {"dy", JsonNumber(ctx, r.dy, "dy")},
                    {"tp_meas", JsonNumber(ctx, r.tpMeasured, "tp_meas")},
                    {"tp_calc", JsonNumber(ctx, r.tpCalculated, "tp_calc")},
                    {"dtp", JsonNumber(ctx, r.dtp, "dtp")}});
  return {{"std_errors", std::move(errors)},
          {"correlation", Optional(ctx, st.correlation, "correlation")},
          {"residuals", std::move(rows)},
          {"rmsd_y", JsonNumber(ctx, st.rmsdY, "rmsd_y")},
          {"aad_y", JsonNumber(ctx, st.aadY, "aad_y")},
          {"rmsd_tp", JsonNumber(ctx, st.rmsdTP, "rmsd_tp")},
          {"aad_tp", JsonNumber(ctx, st.aadTP, "aad_tp")},
          {"messages", st.messages}};
}

void PrintStatisticsText(const VLEStatistics& st, std::string_view p12, std::string_view p21) {
  if (st.stdError12 && st.stdError21) {
    std::cout << "std. error " << p12 << " = " << Text(*st.stdError12) << ", " << p21 << " = "
              << Text(*st.stdError21) << '\n';
  } else {
    std::cout << "std. errors: none\n";
  }
  if (st.correlation) std::cout << "correlation = " << Text(*st.correlation) << '\n';
  std::cout << "RMSD y = " << Text(st.rmsdY) << ", AAD y = " << Text(st.aadY)
            << ", RMSD T/P = " << Text(st.rmsdTP) << ", AAD T/P = " << Text(st.aadTP) << '\n';
}

io::ReportTable ResidualTable(const VLEStatistics& st) {
  io::ReportTable t;
  t.view = "residuals";
  t.columns = {"x", "y_meas", "y_calc", "dy", "tp_meas", "tp_calc", "dtp"};
  for (const VLEResidualRow& r : st.residuals)
    t.rows.push_back({r.x, r.yMeasured, r.yCalculated, r.dy, r.tpMeasured, r.tpCalculated, r.dtp});
  return t;
}

Json ConsistencyJson(CliContext& ctx, const ConsistencyResult& r) {
  for (const auto& m : r.messages) ctx.dialogs.Message(m);
  Json area = nullptr, point = nullptr;
  if (r.area)
    area = {{"D", JsonNumber(ctx, r.area->D, "D")},
            {"J", Optional(ctx, r.area->J, "J")},
            {"passed", r.area->passed}};
  if (r.point) {
    Json res = Json::array();
    for (double v : r.point->residualsY) res.push_back(JsonNumber(ctx, v, "residuals_y"));
    point = {{"order", r.point->order},
             {"mean_abs_dy", JsonNumber(ctx, r.point->meanAbsDy, "mean_abs_dy")},
             {"residuals_y", std::move(res)},
             {"passed", r.point->passed}};
  }
  return {{"area", std::move(area)}, {"point", std::move(point)}, {"messages", r.messages}};
}

void PrintConsistencyText(const ConsistencyResult& r) {
  if (r.area) {
    std::cout << "Area test (Redlich-Kister/Herington): D = " << Text(r.area->D);
    if (r.area->J) std::cout << ", J = " << Text(*r.area->J);
    std::cout << (r.area->passed ? ", passed" : ", failed") << '\n';
  }
  if (r.point)
    std::cout << "Point test (Van Ness-Fredenslund): " << r.point->order
              << " Legendre terms, mean |dy| = " << Text(r.point->meanAbsDy)
              << (r.point->passed ? ", passed" : ", failed") << '\n';
  std::cout << '\n';
}

io::ReportTable ConsistencyTable(const SharedCalcState& s, const ConsistencyResult& r) {
  io::ReportTable t;
  t.view = "consistency";
  t.columns = {"x", "y_meas", "y_calc", "dy"};
  if (!r.point) return t;
  for (size_t i = 0; i < r.point->residualsY.size(); ++i)
    t.rows.push_back(
        {s.VLE.DataX[i + 1], s.VLE.DataY[i + 1], r.point->computedY[i], r.point->residualsY[i]});
  return t;
}

}  // namespace tervale::cli
