// Batch distillation: the example run from start to end, with and without its files.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "batch/batch_data.h"
#include "batch/batch_run.h"
#include "state/shared_state.h"

using namespace tervale;

namespace {

// Resident set size in KiB, from /proc/self/statm.
long ResidentKiB() {
  std::ifstream in("/proc/self/statm");
  long size = 0, resident = 0;
  in >> size >> resident;
  return resident * 4;
}

// Samples the resident size early in the run and at its end.
class MemoryObserver : public BatchRunObserver {
 public:
  void Yield(SharedCalcState&, const BatchStepInfo& info) override {
    if (info.step == 1000) early = ResidentKiB();
  }
  void Notice(SharedCalcState&, std::string_view) override {}
  long early = 0;
};

std::filesystem::path BenchDir() {
  auto dir = std::filesystem::temp_directory_path() / "tervale_bench_batch";
  std::filesystem::create_directories(dir);
  return dir;
}

// variant 0: the example as written (ends by time over at total reflux);
// variant 1: HeatUnit 1 with a duty of 1000000 (total reflux, product, two tanks).
void LoadVariant(SharedCalcState& s, int variant) {
  LoadBatchExample(s, 1);
  if (variant == 1) {
    s.Unit.HeatUnit = 1;
    s.Batch.TRefluxQReb = 1000000;
  }
  CheckBatchGoCalc(s);
}

void RunExample(benchmark::State& state, bool files) {
  const int variant = static_cast<int>(state.range(0));
  auto s = MakeSharedCalcState();
  s->DataPath = BenchDir().string();
  s->LanguageFlag = 1;
  long long steps = 0;
  long growth = 0;
  for (auto _ : state) {
    LoadVariant(*s, variant);
    MemoryObserver obs;
    BatchRunOptions options;
    options.writeFiles = files;
    BatchRunResult r = RunBatchCalculation(*s, &obs, options);
    steps = r.totalRefluxSteps + r.productSteps;
    growth = ResidentKiB() - obs.early;
    benchmark::DoNotOptimize(r);
  }
  state.counters["steps"] = static_cast<double>(steps);
  state.counters["us_per_step"] =
      benchmark::Counter(static_cast<double>(steps) * state.iterations() * 1e-6,
                         benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
  state.counters["rss_growth_KiB"] = static_cast<double>(growth);
}

void BM_BatchExampleWithFiles(benchmark::State& state) {
  RunExample(state, true);
}
void BM_BatchExampleNoFiles(benchmark::State& state) {
  RunExample(state, false);
}

}  // namespace

BENCHMARK(BM_BatchExampleWithFiles)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_BatchExampleNoFiles)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond)->UseRealTime();
