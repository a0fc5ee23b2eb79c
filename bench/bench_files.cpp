#include "bench/bench_files.h"

#include <unistd.h>

#include <cstdlib>
#include <fstream>

namespace bench {
namespace {

constexpr std::size_t kGroupSize = 100;

void AppendItem(std::string& xml, std::size_t i) {
  xml += "<item key=\"k" + std::to_string(i) + "\" value=\"v" + std::to_string(i) + "\"/>\n";
}

}  // namespace

std::string SettingsXml(std::size_t values, Shape shape, const std::string& branch) {
  std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<settings>\n";
  if (!branch.empty()) xml += "<item key=\"" + branch + "\">\n";
  for (std::size_t i = 0; i < values; ++i) {
    const bool grouped = shape == Shape::kGrouped;
    if (grouped && i % kGroupSize == 0) {
      if (i > 0) xml += "</item>\n";
      xml += "<item key=\"g" + std::to_string(i / kGroupSize) + "\">\n";
    }
    AppendItem(xml, i);
    if (grouped && i + 1 == values) xml += "</item>\n";
  }
  if (!branch.empty()) xml += "</item>\n";
  xml += "</settings>\n";
  return xml;
}

const std::filesystem::path& ScratchDirectory() {
  static const std::filesystem::path directory = [] {
    std::filesystem::path made =
        std::filesystem::temp_directory_path() / ("spindle_bench_" + std::to_string(getpid()));
    std::filesystem::create_directories(made);
    std::atexit([] {
      std::error_code ignored;
      std::filesystem::remove_all(ScratchDirectory(), ignored);
    });
    return made;
  }();
  return directory;
}

std::filesystem::path WriteScratchFile(const std::string& name, const std::string& text) {
  const std::filesystem::path path = ScratchDirectory() / name;
  std::ofstream(path, std::ios::binary) << text;
  return path;
}

}  // namespace bench
