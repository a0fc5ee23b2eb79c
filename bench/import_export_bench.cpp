// What exporting and importing the configuration costs with a 5 MB UI archive, against
// what libzip alone needs to copy that archive and extract it (the floor of any export and
// import: one copy, one pass of inflating). The ratio is the price of the library's
// safety (staging, checks, atomic replacement) and of the host's archive; the aim is at
// most 2x.
#include <benchmark/benchmark.h>
#include <unistd.h>
#include <zip.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "core/spindleui.h"
#include "refhost/archive.h"
#include "refhost/args.h"
#include "refhost/file_dialogs.h"
#include "refhost/sheet.h"
#include "refhost/text.h"

namespace {

namespace fs = std::filesystem;

constexpr int kMembers = 20;
constexpr std::size_t kMemberBytes = 256 * 1024;  // 20 x 256 KiB: a 5 MB archive

struct ArchiveFixture {
  ArchiveFixture() {
    fs::create_directories(dir / "user");
    std::mt19937 random(7);
    const Loom::SmartPtr<refhost::ZipArchive> archive =
        refhost::ZipArchive::Create(Loom::File(refhost::Utf16(uiArchive.string())));
    for (int i = 0; i < kMembers; ++i) {
      std::string bytes(kMemberBytes, '\0');
      for (char& c : bytes) c = static_cast<char>('a' + random() % 26);  // letters: ~2:1
      archive->write(refhost::Utf16("pages/page" + std::to_string(i) + ".bin"),
                     Loom::string(bytes));
    }
    archive->save();
    sheet.properties().set("loom.user.path", (dir / "user").string());
    sheet.properties().set("loom.ui.archive.file", uiArchive.string());
    page = sheet.loadDocument(
        "<window id=\"others\"><label id=\"err_Export\"/><label id=\"err_Import\"/></window>",
        "others.xul");
    sheet.window().getSettings()["TEMPLATE"]["TEMPLATE_BUTTON_1"] = "Draft";
  }
  ~ArchiveFixture() { fs::remove_all(dir); }

  bool Call(const char* method) {
    refhost::Args args;
    args.document(page.get());
    return findObject("impexpbut")->call(method, args.count(), args.records(), nullptr);
  }

  fs::path dir = fs::temp_directory_path() / ("import_export_bench_" + std::to_string(getpid()));
  fs::path uiArchive = dir / "ui.zip";
  refhost::Sheet sheet;
  Loom::SmartPtr<refhost::Document> page;
};

void BM_ExportAndImport(benchmark::State& state) {
  ArchiveFixture fixture;
  const Loom::wstring path = refhost::Utf16((fixture.dir / "conf.cfp").string());
  const std::u16string target(path.begin(), path.end());
  for (auto _ : state) {
    refhost::fileDialogs().queue({Loom::OS::FileDialogResult::kChosen, target});
    refhost::fileDialogs().queue({Loom::OS::FileDialogResult::kChosen, target});
    fixture.Call("SaveSettingsForExport");
    fixture.Call("LoadSettingsForImport");
    fixture.Call("setConfirmedOK");
    if (fixture.page->elementById(u"err_Import")->getAttribute(u"value") != u"false" ||
        fixture.page->elementById(u"err_Export")->getAttribute(u"value") != u"false") {
      state.SkipWithError("the export or the import failed");
      break;
    }
  }
  refhost::fileDialogs().reset();
}
BENCHMARK(BM_ExportAndImport)->Unit(benchmark::kMillisecond);

// libzip alone: copy the archive, then inflate every member into a file.
void BM_LibzipCopyAndExtract(benchmark::State& state) {
  ArchiveFixture fixture;
  const fs::path copy = fixture.dir / "copy.zip";
  const fs::path out = fixture.dir / "extracted";
  for (auto _ : state) {
    fs::copy_file(fixture.uiArchive, copy, fs::copy_options::overwrite_existing);
    int error = 0;
    zip_t* archive = zip_open(copy.c_str(), ZIP_RDONLY, &error);
    if (archive == nullptr) {
      state.SkipWithError("libzip cannot open the copy");
      break;
    }
    for (zip_int64_t i = 0; i < zip_get_num_entries(archive, 0); ++i) {
      zip_stat_t stat;
      zip_stat_index(archive, i, 0, &stat);
      std::string bytes(stat.size, '\0');
      zip_file_t* member = zip_fopen_index(archive, i, 0);
      zip_fread(member, bytes.data(), stat.size);
      zip_fclose(member);
      const fs::path file = out / stat.name;
      fs::create_directories(file.parent_path());
      std::ofstream(file, std::ios::binary) << bytes;
    }
    zip_discard(archive);
  }
}
BENCHMARK(BM_LibzipCopyAndExtract)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
