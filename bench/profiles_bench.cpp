// What saving and applying a profile costs for a page of 2,000 elements, against
// pugixml's own parse and save of the same profile file (the floor any stored document
// has to pay). The ratio of the two is the price of the host's serialiser and the
// library's work around it; the aim is at most 2x.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <pugixml.hpp>
#include <sstream>
#include <string>

#include "core/spindleui.h"
#include "refhost/args.h"
#include "refhost/sheet.h"
#include "refhost/text.h"

namespace {

constexpr int kElements = 2000;

std::string LargePage() {
  std::ostringstream xul;
  xul << "<window id=\"page\"><vbox id=\"vars\"/>"
      << "<textbox id=\"edit_ComProfileName\" value=\"Bench\"/>"
      << "<textbox id=\"ePTKWJobAuthentication_NickName\" value=\"ann\"/>";
  for (int i = 0; i < kElements - 4; ++i) {
    xul << "<textbox id=\"field" << i << "\" value=\"" << i << "\" oncommand=\"go();\"/>";
  }
  xul << "<menulist id=\"cmb_ComProfile\"><menupopup/></menulist></window>";
  return xul.str();
}

struct ProfileFixture {
  ProfileFixture() {
    std::filesystem::create_directories(dir);
    sheet.properties().set("loom.user.path", dir.string());
    page = sheet.loadDocument(LargePage(), "page.xul");
  }
  ~ProfileFixture() { std::filesystem::remove_all(dir); }

  bool Call(const char* method, refhost::Args& args) {
    return findObject("profiles")->call(method, args.count(), args.records(), nullptr);
  }

  std::filesystem::path dir =
      std::filesystem::temp_directory_path() / ("profiles_bench_" + std::to_string(getpid()));
  refhost::Sheet sheet;
  Loom::SmartPtr<refhost::Document> page;
};

void BM_ProfileSaveAndApply(benchmark::State& state) {
  ProfileFixture fixture;
  refhost::Args save;
  save.document(fixture.page.get()).element(fixture.page->elementById(u"cmb_ComProfile"));
  refhost::Args apply;
  apply.document(fixture.page.get()).text("Bench");
  for (auto _ : state) {
    if (!fixture.Call("addProfile", save) || !fixture.Call("setProfile", apply)) {
      state.SkipWithError("the profile was not saved and applied");
      break;
    }
  }
}
BENCHMARK(BM_ProfileSaveAndApply)->Unit(benchmark::kMillisecond);

void BM_PugixmlParseAndSave(benchmark::State& state) {
  ProfileFixture fixture;
  refhost::Args save;
  save.document(fixture.page.get()).element(fixture.page->elementById(u"cmb_ComProfile"));
  fixture.Call("addProfile", save);
  const std::string file = (fixture.dir / "zuprof000.xml").string();
  for (auto _ : state) {
    pugi::xml_document document;
    if (!document.load_file(file.c_str()) || !document.save_file(file.c_str())) {
      state.SkipWithError("pugixml could not parse and save the profile");
      break;
    }
  }
}
BENCHMARK(BM_PugixmlParseAndSave)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
