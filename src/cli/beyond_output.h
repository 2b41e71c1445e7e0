#pragma once
// The command line's output of the additions to the binary programs: consistency tests,
// parameter statistics and azeotropes, as JSON, text and tables.
#include <string_view>
#include <vector>

#include "cli/cli_context.h"
#include "regress/vle_azeotrope.h"
#include "regress/vle_consistency.h"
#include "regress/vle_statistics.h"

namespace tervale::cli {

// [{"x1", "tp", "kind"}, ...]
Json AzeotropesJson(CliContext& ctx, const std::vector<Azeotrope>& list);
// "Azeotrope: x1 = ..., T = ... C, minimum-boiling" lines, or "No azeotrope".
void PrintAzeotropesText(const std::vector<Azeotrope>& list, std::string_view tpLabel,
                         std::string_view unit);

// {"std_errors", "correlation", "residuals", "rmsd_y", "aad_y", "rmsd_tp", "aad_tp"}
Json StatisticsJson(CliContext& ctx, const VLEStatistics& st);
void PrintStatisticsText(const VLEStatistics& st, std::string_view p12, std::string_view p21);
// The residual table per measured point; columns named as the JSON keys.
io::ReportTable ResidualTable(const VLEStatistics& st);

// {"area": {"D", "J", "passed"} | null, "point": {"order", "mean_abs_dy", "residuals_y",
// "passed"} | null, "messages"}
Json ConsistencyJson(CliContext& ctx, const ConsistencyResult& r);
void PrintConsistencyText(const ConsistencyResult& r);
// The point test's table: x, y_meas, y_calc, dy per measured point.
io::ReportTable ConsistencyTable(const SharedCalcState& s, const ConsistencyResult& r);

}  // namespace tervale::cli
