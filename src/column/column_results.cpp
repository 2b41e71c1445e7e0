// Result tables and graph series of a solved column. Nothing here changes the tray state.
#include "column/column_results.h"

#include <algorithm>
#include <cmath>

#include "column/column_case.h"
#include "io/display_format.h"
#include "state/shared_state.h"
#include "state/units.h"

namespace tervale {

namespace {

std::string T(const SharedCalcState& s, const char* en, const char* ja) {
  return s.LanguageFlag == 1 ? en : ja;
}

struct ProductSums {
  CompArray outMoles{};
  double heatOut = 0;
};

// Sums over the products: top liquid, top vapour, side cuts, bottom.
ProductSums SumProducts(const SharedCalcState& s) {
  const auto& c = s.Column;
  ProductSums p;
  const int n = s.NTray;
  auto add = [&](double flow, const CompArray& x, double h) {
    for (int i = 1; i <= s.NC; ++i) p.outMoles[i] += flow * x[i];
    p.heatOut += flow * h;
  };
  if (c.TopLiquidFlow > 0) add(c.TopLiquidFlow, c.TrayX[1], c.TrayHL[1]);
  if (c.TopVaporFlow > 0) add(c.TopVaporFlow, c.TrayY[1], c.TrayHV[1]);
  for (int k = 1; k <= s.NSideLiq; ++k) {
    int j = c.LiqSideTray[k];
    add(c.LiqSideFlow[k], c.TrayX[j], c.TrayHL[j]);
  }
  for (int k = 1; k <= s.NSideVap; ++k) {
    int j = c.VapSideTray[k];
    add(c.VapSideFlow[k], c.TrayY[j], c.TrayHV[j]);
  }
  add(c.BottomFlow, c.TrayX[n], c.TrayHL[n]);
  return p;
}

double MeanMW(const SharedCalcState& s, const CompArray& x) {
  double m = 0;
  for (int i = 1; i <= s.NC; ++i) m += x[i] * s.Comp.CompMW[i];
  return m;
}

}  // namespace

ColumnDuties CalcColumnDuties(const SharedCalcState& s) {
  const auto& c = s.Column;
  ColumnDuties d;
  for (int f = 1; f <= s.NFeed; ++f) d.HeatIn += c.FeedFlow[f] * c.FeedEnthalpy[f];
  d.HeatOut = SumProducts(s).heatOut;
  if (c.RefluxRatio == 0) {
    d.Condenser = 0;
  } else {
    d.Condenser = c.TrayV[2] * c.TrayHV[2] - (c.TopLiquidFlow + c.TrayL[1]) * c.TrayHL[1];
    if (c.TopVaporFlow > 0) d.Condenser -= c.TopVaporFlow * c.TrayHV[1];
  }
  d.Reboiler = d.HeatOut - d.HeatIn + d.Condenser;
  return d;
}

io::ReportTable ColumnBalanceTable(SharedCalcState& s) {
  const auto& c = s.Column;
  io::ReportTable t;
  t.view = "balance";
  t.columns = {T(s, "Component", "成分"), T(s, "In", "入"), T(s, "Out", "出"),
               T(s, "In-Out", "入-出"), "(In-Out)/In*100"};
  CompArray in{};
  for (int f = 1; f <= s.NFeed; ++f)
    for (int i = 1; i <= s.NC; ++i) in[i] += c.FeedFlow[f] * c.FeedComp[f][i];
  const ProductSums p = SumProducts(s);
  auto row = [&](std::string name, double a, double b) {
    t.rows.push_back({name, a, b, a - b, (a - b) / a * 100});
  };
  double molIn = 0, molOut = 0, wtIn = 0, wtOut = 0;
  for (int i = 1; i <= s.NC; ++i) {
    row(s.Comp.CompName[i], in[i], p.outMoles[i]);
    molIn += in[i];
    molOut += p.outMoles[i];
    wtIn += in[i] * s.Comp.CompMW[i];
    wtOut += p.outMoles[i] * s.Comp.CompMW[i];
  }
  row(T(s, "Total(Kgmol/H)", "合計(Kgmol/H)"), molIn, molOut);
  row(T(s, "Total(Kg/H)", "合計(Kg/H)"), wtIn, wtOut);
  // the heat block is shown only for EnthalpyMethod > 1, as designed
  if (s.EnthalpyMethod > 1) {
    const ColumnDuties d = CalcColumnDuties(s);
    const double hin = ConvHeatToDisplay(s, d.HeatIn);
    const double hout = ConvHeatToDisplay(s, d.HeatOut);
    const double hdiff = ConvHeatToDisplay(s, d.HeatIn - d.HeatOut);
    t.rows.push_back(
        {T(s, "Heat", "熱量"), hin, hout, hdiff, (d.HeatIn - d.HeatOut) / d.HeatIn * 100});
    const std::string unit = s.Unit.HeatUnit == 1 ? "J" : "Kcal";
    t.rows.push_back(
        {T(s, "Heat Duty Condenser", "熱負荷 コンデンサー") + std::string("( ") + unit + " )",
         d.Condenser, std::monostate{}, std::monostate{}, std::monostate{}});
    t.rows.push_back(
        {T(s, "Heat Duty Reboiler", "熱負荷 リボイラー") + std::string("( ") + unit + " )",
         d.Reboiler, std::monostate{}, std::monostate{}, std::monostate{}});
  }
  return t;
}

io::ReportTable ColumnTrayTable(SharedCalcState& s, TrayView view) {
  const auto& c = s.Column;
  const bool vapour = view == TrayView::VaporMol || view == TrayView::VaporWt;
  const bool weight = view == TrayView::LiquidWt || view == TrayView::VaporWt;
  io::ReportTable t;
  static const char* names[] = {"tray-liquid-mol", "tray-vapour-mol", "tray-liquid-wt",
                                "tray-vapour-wt"};
  t.view = names[static_cast<int>(view)];
  t.columns = {T(s, "Tray", "段"), T(s, "Temp ", "温度 "), T(s, "Press ", "圧力 "),
               weight ? T(s, "Flow(Kg/H)", "流量(Kg/H)") : T(s, "Flow(Kgmol/H)", "流量(Kgmol/H)"),
               weight ? T(s, "Enthalpy(Cal/g)", "ｴﾝﾀﾙﾋﾟｰ(Cal/g)")
                      : T(s, "Enthalpy(Cal/mol)", "ｴﾝﾀﾙﾋﾟｰ(Cal/mol)")};
  for (int i = 1; i <= s.NC; ++i) t.columns.push_back(s.Comp.CompName[i]);
  for (int j = 1; j <= s.NTray; ++j) {
    const CompArray& x = vapour ? c.TrayY[j] : c.TrayX[j];
    const double flow = vapour ? c.TrayV[j] : c.TrayL[j];
    const double h = ConvHeatToDisplay(s, vapour ? c.TrayHV[j] : c.TrayHL[j]);
    std::vector<io::Cell> row{static_cast<double>(j), ConvTempFromBase(s, c.TrayT[j]),
                              ConvPressFromBase(s, c.TrayP[j])};
    if (weight) {
      const double m = MeanMW(s, x);
      row.push_back(flow * m);
      row.push_back(h / m);
      for (int i = 1; i <= s.NC; ++i) row.push_back(x[i] * s.Comp.CompMW[i] / m);
    } else {
      row.push_back(flow);
      row.push_back(h);
      for (int i = 1; i <= s.NC; ++i) row.push_back(x[i]);
    }
    t.rows.push_back(std::move(row));
  }
  return t;
}

io::ReportTable ColumnProductTable(SharedCalcState& s, ProductView view) {
  const auto& c = s.Column;
  static const char* names[] = {"feed-mol",  "feed-wt",    "vapour-mol",
                                "vapour-wt", "liquid-mol", "liquid-wt"};
  io::ReportTable t;
  t.view = names[static_cast<int>(view)];
  const bool weight =
      view == ProductView::FeedWt || view == ProductView::VaporWt || view == ProductView::LiquidWt;
  struct Col {
    int tray;
    double temp, press, flow, h;
    CompArray x;
  };
  std::vector<Col> cols;
  const ProductLists p = MakeProductLists(s);
  if (view == ProductView::FeedMol || view == ProductView::FeedWt) {
    for (int f = 1; f <= s.NFeed; ++f)
      cols.push_back({c.FeedTray[f], c.FeedTemp[f], c.FeedPress[f], c.FeedFlow[f],
                      ConvHeatToDisplay(s, c.FeedEnthalpy[f]), c.FeedComp[f]});
  } else if (view == ProductView::VaporMol || view == ProductView::VaporWt) {
    for (int k = 1; k <= p.NVapProduct; ++k) {
      const int j = p.VapProductTray[k];
      cols.push_back({j, ConvTempFromBase(s, c.TrayT[j]), ConvPressFromBase(s, c.TrayP[j]),
                      p.VapProductFlow[k], ConvHeatToDisplay(s, c.TrayHV[j]), c.TrayY[j]});
    }
    if (cols.empty()) t.messages.push_back(T(s, "no Vapor Side Cut", "蒸気抜き出しはありません。"));
  } else {
    for (int k = 1; k <= p.NLiqProduct; ++k) {
      const int j = p.LiqProductTray[k];
      cols.push_back({j, ConvTempFromBase(s, c.TrayT[j]), ConvPressFromBase(s, c.TrayP[j]),
                      p.LiqProductFlow[k], ConvHeatToDisplay(s, c.TrayHL[j]), c.TrayX[j]});
    }
  }
  t.columns.push_back("");
  for (const Col& col : cols) t.columns.push_back(std::to_string(col.tray) + " # ");
  std::vector<std::vector<io::Cell>> rows(4 + s.NC);
  rows[0].push_back(T(s, "Temp ", "温度 "));
  rows[1].push_back(T(s, "Press ", "圧力 "));
  rows[2].push_back(T(s, "Flow", "流量"));
  rows[3].push_back(T(s, "Enthalpy", "エンタルピー"));
  for (int i = 1; i <= s.NC; ++i) rows[3 + i].push_back(s.Comp.CompName[i]);
  for (const Col& col : cols) {
    rows[0].push_back(col.temp);
    rows[1].push_back(col.press);
    const double m = weight ? MeanMW(s, col.x) : 1.0;
    rows[2].push_back(col.flow * m);
    rows[3].push_back(col.h / m);
    for (int i = 1; i <= s.NC; ++i)
      rows[3 + i].push_back(weight ? col.x[i] * s.Comp.CompMW[i] / m : col.x[i]);
  }
  t.rows = std::move(rows);
  return t;
}

ProfileGraph CompositionGraph(const SharedCalcState& s) {
  const auto& c = s.Column;
  ProfileGraph g;
  g.title = T(s, "Vapor/Liquid Profile", "蒸気／液組成分布");
  const int decades = c.GraphDecades > 0 ? c.GraphDecades : 6;
  g.xMin = -decades;
  g.xMax = 0;
  g.divisions = decades;
  for (int k = 1; k <= decades; ++k)
    g.xLabels.push_back(io::FormatNumber(std::pow(10.0, k - decades - 1), "0.0E+00"));
  g.xLabels.push_back("1.0");
  for (int f = 1; f <= s.NFeed; ++f) g.markTrays.push_back(c.FeedTray[f]);
  for (int k = 1; k <= s.NSideLiq; ++k) g.markTrays.push_back(c.LiqSideTray[k]);
  for (int k = 1; k <= s.NSideVap; ++k) g.markTrays.push_back(c.VapSideTray[k]);
  auto u = [&](double x) { return x < 1e-20 ? g.xMin : std::log10(x); };
  for (int phase = 0; phase < 2; ++phase) {
    for (int i = 1; i <= s.NC; ++i) {
      GraphSeries ser;
      ser.vapour = phase == 1;
      ser.component = i;
      ser.name = s.Comp.CompName[i] + (phase ? " (V)" : " (L)");
      const TrayCompMatrix& m = phase ? c.TrayY : c.TrayX;
      for (int j = 1; j <= s.NTray; ++j) {
        const double a = std::max(u(m[j][i]), g.xMin);
        if (j > 1) {
          const double pa = u(m[j - 1][i]);
          const double ca = u(m[j][i]);
          // a segment crossing the left edge is cut where it crosses
          if ((pa < g.xMin) != (ca < g.xMin)) {
            const double t = (g.xMin - pa) / (ca - pa);
            ser.points.push_back({g.xMin, (j - 1) + t});
          }
        }
        ser.points.push_back({a, static_cast<double>(j)});
      }
      g.series.push_back(std::move(ser));
    }
  }
  return g;
}

ProfileGraph TemperatureGraph(const SharedCalcState& s) {
  const auto& c = s.Column;
  ProfileGraph g;
  g.title = T(s, "Temp Profile", "温度分布");
  g.xMin = ConvTempFromBase(s, c.TrayT[1]);
  g.xMax = ConvTempFromBase(s, c.TrayT[s.NTray]);
  g.divisions = 3;
  for (int k = 0; k <= 3; ++k)
    g.xLabels.push_back(io::FormatNumber(g.xMin + (g.xMax - g.xMin) * k / 3, "##0.0"));
  for (int f = 1; f <= s.NFeed; ++f) g.markTrays.push_back(c.FeedTray[f]);
  for (int k = 1; k <= s.NSideLiq; ++k) g.markTrays.push_back(c.LiqSideTray[k]);
  for (int k = 1; k <= s.NSideVap; ++k) g.markTrays.push_back(c.VapSideTray[k]);
  GraphSeries ser;
  ser.name = g.title;
  for (int j = 1; j <= s.NTray; ++j)
    ser.points.push_back({ConvTempFromBase(s, c.TrayT[j]), static_cast<double>(j)});
  g.series.push_back(std::move(ser));
  return g;
}

void SetGraphDivision(SharedCalcState& s, double d) {
  const double v = d + 1;
  s.Column.GraphDecades = v > 0 && v <= 100 ? static_cast<int>(v) : 6;
}

}  // namespace tervale
