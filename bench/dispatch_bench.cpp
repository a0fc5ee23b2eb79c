// What a script call costs: Math.round through findObject and the dispatcher, against
// the same rounding called directly; and what the diagnostics hook adds, to calls that
// match (nothing: the hook is looked at only after every row failed) and to calls that
// do not (one test while no hook is set; the explanation once one is).
#include <benchmark/benchmark.h>

#include "core/math.h"
#include "core/spindleui.h"
#include "refhost/args.h"
#include "refhost/sheet.h"

namespace {

void CountReason(const SpindleUnmatchedCall* call) { benchmark::DoNotOptimize(call->reason); }

// Math.METHOD(document, 2.5) in a loop, with the diagnostics hook set or not.
void CallMath(benchmark::State& state, const char* method, bool withHook) {
  refhost::Sheet sheet;
  auto doc = sheet.loadDocument("<window id=\"w\"><vbox id=\"vars\"/></window>", "bench.xul");
  refhost::Args args;
  args.document(doc.get()).real(2.5);
  setDiagnosticsHook(withHook ? CountReason : nullptr);
  for (auto _ : state) {
    xClass* math = findObject("Math");
    benchmark::DoNotOptimize(math->call(method, args.count(), args.records(), nullptr));
  }
  setDiagnosticsHook(nullptr);
}

void BM_RoundThroughDispatch(benchmark::State& state) { CallMath(state, "round", false); }
BENCHMARK(BM_RoundThroughDispatch);

void BM_RoundThroughDispatchWithHook(benchmark::State& state) { CallMath(state, "round", true); }
BENCHMARK(BM_RoundThroughDispatchWithHook);

void BM_UnmatchedCall(benchmark::State& state) { CallMath(state, "rnd", false); }
BENCHMARK(BM_UnmatchedCall);

void BM_UnmatchedCallWithHook(benchmark::State& state) { CallMath(state, "rnd", true); }
BENCHMARK(BM_UnmatchedCallWithHook);

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
