// The zip reader on arbitrary bytes: an archive opens or is refused with ArchiveError.
// What opens has only names that stay inside an extraction directory, and extracting
// it writes nothing outside that directory.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/fuzz_support.h"
#include "host/settings.h"
#include "refhost/accounting.h"
#include "refhost/text.h"

namespace fs = std::filesystem;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fs::path work =
      fs::temp_directory_path() / ("fuzz_archive_" + std::to_string(getpid()));
  fs::remove_all(work);
  fs::create_directories(work / "out");
  std::ofstream(work / "in.zip", std::ios::binary)
      .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
  const long held = refhost::heldReferences();
  try {
    const Loom::SmartPtr<Loom::Services::Archive> archive =
        Loom::Services::Archive::open(Loom::File(refhost::Utf16((work / "in.zip").string())));
    for (const Loom::wstring& name : archive->members()) {
      FUZZ_REQUIRE(!name.empty());
      archive->read(name);
    }
    archive->extractAll(Loom::File(refhost::Utf16((work / "out").string())));
  } catch (const Loom::Services::ArchiveError&) {
  }
  FUZZ_REQUIRE(refhost::heldReferences() == held);
  for (const fs::directory_entry& entry : fs::directory_iterator(work)) {
    const std::string name = entry.path().filename().string();
    FUZZ_REQUIRE(name == "in.zip" || name == "out");
  }
  return 0;
}
