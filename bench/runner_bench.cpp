// What the scenario runner adds to a call: the per-call overhead (a scenario of K more
// calls against the same scenario without them, divided by K) as the settings trees and
// the temporary tree grow, and whole scenarios of N saveSetting calls. Times are the
// thread's CPU time (kernel time included), the best of a few runs, so that other work on
// the machine does not blur the difference; the first call of a file, which notes every
// file of the tree once, is in both scenarios.
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <sstream>

#include "bench/bench_files.h"
#include "core/spindleui.h"
#include "tools/loomsim/report.h"
#include "tools/loomsim/runner.h"

namespace {

constexpr int kCallsMeasured = 2000;
constexpr int kRunsPerFigure = 3;
// Each iteration runs whole scenarios several times for one figure: one is enough.
constexpr int kOverheadRuns = 1;
constexpr char kPage[] = "doc page <<XUL\n<window id=\"page\"><vbox id=\"vars\"/></window>\nXUL\n";
constexpr char kCheapCall[] = "call Math.round(document, double(2.5))\n";

double ThreadSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

double SecondsToRun(const std::string& scenario) {
  const std::filesystem::path file = bench::ScratchDirectory() / "bench.scn";
  std::ostringstream out;
  loomsim::Report report(out, true);
  const double start = ThreadSeconds();
  loomsim::RunScenario(findObject, file, scenario, loomsim::RunOptions{.quiet = true}, report);
  const double took = ThreadSeconds() - start;
  if (report.failed() != 0) throw std::runtime_error("benchmark scenario failed:\n" + out.str());
  return took;
}

double BestOfRuns(const std::string& scenario) {
  double best = SecondsToRun(scenario);
  for (int run = 1; run < kRunsPerFigure; ++run) best = std::min(best, SecondsToRun(scenario));
  return best;
}

std::string Repeated(const std::string& line, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += line;
  return text;
}

// Reports the time per call added by the runner to a scenario that starts with `setup`.
void MeasureCallOverhead(benchmark::State& state, const std::string& setup) {
  const std::string without = setup + kPage + kCheapCall;
  const std::string with = without + Repeated(kCheapCall, kCallsMeasured);
  for (auto _ : state) {
    const double base = BestOfRuns(without);
    state.SetIterationTime(std::max(0.0, BestOfRuns(with) - base) / kCallsMeasured);
  }
  state.SetComplexityN(state.range(0));
}

// A call on a small sheet whose user tree holds N values.
void BM_RunnerCallOverheadSettings(benchmark::State& state) {
  const auto values = static_cast<std::size_t>(state.range(0));
  const std::string name = "runner_user" + std::to_string(values) + ".xml";
  bench::WriteScratchFile(name, bench::SettingsXml(values, bench::Shape::kGrouped));
  MeasureCallOverhead(state, "user file \"" + name + "\"\n");
}
BENCHMARK(BM_RunnerCallOverheadSettings)
    ->RangeMultiplier(10)
    ->Range(10, 100'000)
    ->UseManualTime()
    ->Iterations(kOverheadRuns)
    ->Complexity()
    ->Unit(benchmark::kMicrosecond);

// A call on a small sheet whose temporary tree holds one file of N lines (N * 64 bytes).
void BM_RunnerCallOverheadFileSize(benchmark::State& state) {
  const std::string line(63, 'x');
  MeasureCallOverhead(state, "file user:\"big.txt\" <<END\n" +
                                 Repeated(line + "\n", static_cast<int>(state.range(0))) + "END\n");
}
BENCHMARK(BM_RunnerCallOverheadFileSize)
    ->RangeMultiplier(10)
    ->Range(10, 100'000)
    ->UseManualTime()
    ->Iterations(kOverheadRuns)
    ->Complexity()
    ->Unit(benchmark::kMicrosecond);

// A call on a small sheet whose temporary tree holds N small files.
void BM_RunnerCallOverheadFileCount(benchmark::State& state) {
  std::string setup;
  for (int i = 0; i < state.range(0); ++i) {
    setup += "file user:\"f" + std::to_string(i) + ".txt\" <<END\nsome text\nEND\n";
  }
  MeasureCallOverhead(state, setup);
}
BENCHMARK(BM_RunnerCallOverheadFileCount)
    ->RangeMultiplier(10)
    ->Range(10, 1'000)
    ->UseManualTime()
    ->Iterations(kOverheadRuns)
    ->Complexity()
    ->Unit(benchmark::kMicrosecond);

// A whole scenario of N saveSetting calls, each adding a value to the user tree.
void BM_RunnerSaveSettingScenario(benchmark::State& state) {
  std::string scenario = kPage;
  for (int i = 0; i < state.range(0); ++i) {
    scenario += "call settings.saveSetting(document, \"k" + std::to_string(i) + "\", \"v\")\n";
  }
  for (auto _ : state) state.SetIterationTime(BestOfRuns(scenario));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_RunnerSaveSettingScenario)
    ->RangeMultiplier(10)
    ->Range(100, 10'000)
    ->UseManualTime()
    ->Iterations(kOverheadRuns)
    ->Complexity()
    ->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
