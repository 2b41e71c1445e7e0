// Speed of the property database: opening the file and a name search over CriticalConstant.
#include <benchmark/benchmark.h>

#include <unistd.h>
#include <filesystem>

#include "database/lookups.h"
#include "database/property_db.h"
#include "state/shared_state.h"

namespace {

namespace fs = std::filesystem;
using namespace tervale;

const fs::path& Database() {
  static fs::path file = [] {
    fs::path dir = fs::temp_directory_path() / ("tervale_bench_db_" + std::to_string(::getpid()));
    fs::create_directories(dir);
    fs::path f = dir / "Masterd$.mde";
    db::BuildDatabaseFromSeed(fs::path(TERVALE_SOURCE_DIR) / "data" / "property-seed", f);
    return f;
  }();
  return file;
}

void BM_OpenDatabase(benchmark::State& state) {
  const auto& file = Database();
  for (auto _ : state) {
    auto database = db::PropertyDatabase::Open(file);
    benchmark::DoNotOptimize(database.get());
  }
}
BENCHMARK(BM_OpenDatabase)->Unit(benchmark::kMillisecond);

void BM_SearchCriticalConstant(benchmark::State& state, const char* word) {
  auto database = db::PropertyDatabase::Open(Database());
  auto s = MakeSharedCalcState();
  size_t found = 0;
  for (auto _ : state) {
    auto d = db::SearchSubstance(*database, *s, db::LookupKind::Component, word);
    found = d.Found.rows.size();
    benchmark::DoNotOptimize(found);
  }
  state.counters["rows"] = double(found);
}
BENCHMARK_CAPTURE(BM_SearchCriticalConstant, exact, "Methanol")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SearchCriticalConstant, prefix, "Meth*")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SearchCriticalConstant, set, "[a-c]*ene")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_SearchCriticalConstant, whole_table, "*")->Unit(benchmark::kMillisecond);

}  // namespace
