// How the settings trees scale: loading a settings file (against pugixml parsing the same
// file), the script calls on a tree of N values, mark / keep / revert around one change,
// and the device factory reset of a branch of N values. Each reports its fitted order.
//
// A load or a parse of 100,000 keys allocates and frees tens of megabytes. Left to itself,
// glibc gives such memory back to the system or keeps it depending on what ran before in
// the process, and on a virtual machine the page faults of memory taken afresh can cost
// more than the parse: pugixml's figure for 100,000 keys was 3 ms or 13 ms depending on
// which benchmarks ran first. main() therefore has the allocator keep what it frees, for
// every benchmark alike, so that each measures its own work, and pugixml's parse, the
// yardstick of the load, at its fastest.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <pugixml.hpp>

#include "bench/bench_files.h"
#include "core/spindleui.h"
#include "host/settings.h"
#include "refhost/args.h"
#include "refhost/document.h"
#include "refhost/properties.h"
#include "refhost/sheet.h"
#include "refhost/window.h"

namespace {

using Loom::Services::PersistentSettings;

constexpr std::int64_t kSmallest = 100;
constexpr std::int64_t kLargest = 100'000;

void Sizes(benchmark::internal::Benchmark* bench) {
  bench->RangeMultiplier(10)->Range(kSmallest, kLargest)->Complexity();
}

std::filesystem::path SettingsFile(std::size_t values, bench::Shape shape) {
  const std::string name =
      (shape == bench::Shape::kFlat ? "flat" : "grouped") + std::to_string(values) + ".xml";
  return bench::WriteScratchFile(name, bench::SettingsXml(values, shape));
}

void Store(PersistentSettings& tree, const std::filesystem::path& file) {
  tree.setBackingStoreIO(Loom::SmartPtr<Loom::Services::BackingStoreIO>(
      new Loom::Services::FileBackingStoreIO(Loom::File(Loom::wstring(file.u16string())), 0, 1)));
}

void LoadSettingsFile(benchmark::State& state, bench::Shape shape) {
  const auto file = SettingsFile(static_cast<std::size_t>(state.range(0)), shape);
  PersistentSettings tree;
  Store(tree, file);
  for (auto _ : state) benchmark::DoNotOptimize(tree.loadSettings());
  state.SetComplexityN(state.range(0));
}
void BM_LoadFlatSettingsFile(benchmark::State& state) {
  LoadSettingsFile(state, bench::Shape::kFlat);
}
BENCHMARK(BM_LoadFlatSettingsFile)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
void BM_LoadGroupedSettingsFile(benchmark::State& state) {
  LoadSettingsFile(state, bench::Shape::kGrouped);
}
BENCHMARK(BM_LoadGroupedSettingsFile)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

// The yardstick for loading: pugixml reading the same flat file.
void BM_PugixmlParseFlatFile(benchmark::State& state) {
  const auto file = SettingsFile(static_cast<std::size_t>(state.range(0)), bench::Shape::kFlat);
  for (auto _ : state) {
    pugi::xml_document document;
    benchmark::DoNotOptimize(document.load_file(file.c_str()));
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_PugixmlParseFlatFile)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

// A sheet whose user tree holds N flat values, and a document to call with.
class SheetWithValues {
 public:
  explicit SheetWithValues(std::size_t values) {
    Store(tree(), SettingsFile(values, bench::Shape::kFlat));
    tree().loadSettings();
    middle_ = "k" + std::to_string(values / 2);
  }
  PersistentSettings& tree() { return sheet_.window().getSettings(); }
  refhost::Document* doc() { return doc_.get(); }
  const std::string& middle() const { return middle_; }
  refhost::Document& page() { return *doc_; }
  refhost::Properties& properties() { return sheet_.properties(); }

 private:
  refhost::Sheet sheet_;
  Loom::SmartPtr<refhost::Document> doc_ =
      sheet_.loadDocument("<window id=\"w\"><textbox id=\"t\"/></window>", "bench.xul");
  std::string middle_;
};

bool CallSettings(const char* method, refhost::Args& args) {
  return findObject("settings")->call(method, args.count(), args.records(), nullptr);
}

void BM_SaveSettingCall(benchmark::State& state) {
  SheetWithValues sheet(static_cast<std::size_t>(state.range(0)));
  refhost::Args args;
  args.document(sheet.doc()).text(sheet.middle()).text("saved");
  for (auto _ : state) benchmark::DoNotOptimize(CallSettings("saveSetting", args));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_SaveSettingCall)->Apply(Sizes);

void BM_LoadSettingCall(benchmark::State& state) {
  SheetWithValues sheet(static_cast<std::size_t>(state.range(0)));
  refhost::Args args;
  args.document(sheet.doc())
      .element(sheet.page().getElementById(u"t").get())
      .text("value")
      .text(sheet.middle());
  for (auto _ : state) benchmark::DoNotOptimize(CallSettings("loadSetting", args));
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_LoadSettingCall)->Apply(Sizes);

// removeSetting of one value, then saveSetting puts it back (last).
void BM_RemoveSettingCall(benchmark::State& state) {
  SheetWithValues sheet(static_cast<std::size_t>(state.range(0)));
  refhost::Args remove;
  remove.document(sheet.doc()).text(sheet.middle());
  refhost::Args save;
  save.document(sheet.doc()).text(sheet.middle()).text("back");
  for (auto _ : state) {
    benchmark::DoNotOptimize(CallSettings("removeSetting", remove));
    benchmark::DoNotOptimize(CallSettings("saveSetting", save));
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_RemoveSettingCall)->Apply(Sizes);

// mark, one value changed, then revert (or keep) on a tree of N values.
void MarkOneChange(benchmark::State& state, bool revert) {
  SheetWithValues sheet(static_cast<std::size_t>(state.range(0)));
  PersistentSettings& tree = sheet.tree();
  const Loom::string key(sheet.middle());
  for (auto _ : state) {
    tree.mark();
    tree[key] = "changed";
    if (revert) {
      tree.revert();
    } else {
      tree.keep();
    }
  }
  state.SetComplexityN(state.range(0));
}
void BM_MarkOneChangeRevert(benchmark::State& state) { MarkOneChange(state, true); }
BENCHMARK(BM_MarkOneChangeRevert)->Apply(Sizes);
void BM_MarkOneChangeKeep(benchmark::State& state) { MarkOneChange(state, false); }
BENCHMARK(BM_MarkOneChangeKeep)->Apply(Sizes);

// mark, every value replaced by a reload, then revert: the cost of a change of N values.
void BM_MarkReloadRevert(benchmark::State& state) {
  SheetWithValues sheet(static_cast<std::size_t>(state.range(0)));
  PersistentSettings& tree = sheet.tree();
  for (auto _ : state) {
    tree.mark();
    tree.loadSettings();
    tree.revert();
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_MarkReloadRevert)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

// dev_settings.restorePersistentFactoryDefaults of a branch of N values from the
// driver's devSettings.xml.
void BM_DeviceFactoryReset(benchmark::State& state) {
  const auto values = static_cast<std::size_t>(state.range(0));
  const std::filesystem::path driver =
      bench::ScratchDirectory() / ("driver" + std::to_string(values));
  std::filesystem::create_directories(driver);
  bench::WriteScratchFile("driver" + std::to_string(values) + "/kstdevSettings.xml",
                          bench::SettingsXml(values, bench::Shape::kFlat, "Branch"));
  SheetWithValues sheet(kSmallest);
  refhost::Properties& properties = sheet.properties();
  properties.set("loom.driver.prefix", "kst");
  properties.set("loom.driver.path", driver.string());
  refhost::Args args;
  args.document(sheet.doc()).text("Branch");
  xClass* devSettings = findObject("dev_settings");
  for (auto _ : state) {
    benchmark::DoNotOptimize(devSettings->call("restorePersistentFactoryDefaults", args.count(),
                                               args.records(), nullptr));
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(BM_DeviceFactoryReset)->Apply(Sizes)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  // Nothing below 64 MiB is mapped on its own, and nothing freed under 256 MiB is given back.
  mallopt(M_MMAP_THRESHOLD, 64 << 20);
  mallopt(M_TRIM_THRESHOLD, 256 << 20);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
