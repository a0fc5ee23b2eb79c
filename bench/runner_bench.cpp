// What the scenario runner adds to a call: the time per call of K cheap calls (Math.round,
// a fraction of a microsecond itself) with the full report printed, as the settings trees
// and the temporary tree grow; and whole scenarios of N saveSetting calls. Times are the
// thread's CPU time (kernel time included), the best of a few runs, so that other work on
// the machine does not blur them. The first call of a file, which notes every file of the
// tree once, is left out of the per-call figure.
#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <ostream>
#include <streambuf>
#include <string_view>

#include "bench/bench_files.h"
#include "core/spindleui.h"
#include "tools/loomsim/report.h"
#include "tools/loomsim/runner.h"

namespace {

constexpr int kCallsMeasured = 2000;
constexpr int kRunsPerFigure = 3;
// Each iteration runs a scenario several times for one figure: one is enough.
constexpr int kOverheadRuns = 1;
constexpr char kPage[] = "doc page <<XUL\n<window id=\"page\"><vbox id=\"vars\"/></window>\nXUL\n";
constexpr char kCheapCall[] = "call Math.round(document, double(2.5))\n";
// Comments the report prints when the run reaches them, around the calls measured.
constexpr std::string_view kStartMark = "# start";
constexpr std::string_view kStopMark = "# stop";

double ThreadSeconds() {
  timespec now;
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// The report's output, noting the thread's CPU time when a mark comes by.
class MarkClock final : public std::streambuf {
 public:
  double measured() const { return stop_ - start_; }
  const std::string& text() const { return text_; }

 private:
  int overflow(int c) override {
    if (c == '\n') {
      const std::string_view line = std::string_view(text_).substr(lineStart_);
      if (line == kStartMark) start_ = ThreadSeconds();
      if (line == kStopMark) stop_ = ThreadSeconds();
      lineStart_ = text_.size() + 1;
    }
    if (c != traits_type::eof()) text_.push_back(static_cast<char>(c));
    return c;
  }

  std::string text_;
  std::size_t lineStart_ = 0;
  double start_ = 0;
  double stop_ = 0;
};

// The CPU time between the marks of `scenario`, run with the full report (or the whole
// run's, quietly, when `marked` is false).
double SecondsToRun(const std::string& scenario, bool marked) {
  const std::filesystem::path file = bench::ScratchDirectory() / "bench.scn";
  MarkClock clock;
  std::ostream out(&clock);
  loomsim::Report report(out, !marked);
  const double start = ThreadSeconds();
  loomsim::RunScenario(findObject, file, scenario, loomsim::RunOptions{.quiet = !marked}, report);
  const double took = ThreadSeconds() - start;
  if (report.failed() != 0) throw std::runtime_error("benchmark scenario failed:\n" + clock.text());
  return marked ? clock.measured() : took;
}

double BestOfRuns(const std::string& scenario, bool marked) {
  double best = SecondsToRun(scenario, marked);
  for (int run = 1; run < kRunsPerFigure; ++run) {
    best = std::min(best, SecondsToRun(scenario, marked));
  }
  return best;
}

std::string Repeated(const std::string& line, int times) {
  std::string text;
  for (int i = 0; i < times; ++i) text += line;
  return text;
}

// Reports the time per call, with the runner's report of it, in a scenario that starts
// with `setup`; the first call of the file is left out of the measure.
void MeasureCallOverhead(benchmark::State& state, const std::string& setup) {
  const std::string scenario = setup + kPage + kCheapCall + std::string(kStartMark) + "\n" +
                               Repeated(kCheapCall, kCallsMeasured) + std::string(kStopMark) + "\n";
  for (auto _ : state) state.SetIterationTime(BestOfRuns(scenario, true) / kCallsMeasured);
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
  for (auto _ : state) state.SetIterationTime(BestOfRuns(scenario, false));
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
