// What a script call costs: Math.round through findObject and the dispatcher, against
// the same rounding called directly.
#include <benchmark/benchmark.h>

#include "core/math.h"
#include "core/spindleui.h"
#include "refhost/args.h"
#include "refhost/sheet.h"

namespace {

void BM_RoundThroughDispatch(benchmark::State& state) {
  refhost::Sheet sheet;
  auto doc = sheet.loadDocument("<window id=\"w\"><vbox id=\"vars\"/></window>", "bench.xul");
  refhost::Args args;
  args.document(doc.get()).real(2.5);
  for (auto _ : state) {
    xClass* math = findObject("Math");
    benchmark::DoNotOptimize(math->call("round", args.count(), args.records(), nullptr));
  }
}
BENCHMARK(BM_RoundThroughDispatch);

void BM_RoundDirect(benchmark::State& state) {
  double x = 2.5;
  for (auto _ : state) {
    benchmark::DoNotOptimize(x);
    benchmark::DoNotOptimize(spindle::math::RoundHalfUp(x));
  }
}
BENCHMARK(BM_RoundDirect);

}  // namespace

BENCHMARK_MAIN();
