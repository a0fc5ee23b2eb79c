// The settings-file loader on arbitrary text, both ways a tree is built: from a file
// (straight from pugixml's tree) and from a document in memory (through the host's DOM).
// Both load the same text or neither does, into the same tree. A file that loads is
// saved; the saved text is well-formed (it parses), and loading it gives the same tree,
// which saves to the same text again. No reference is left held.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "host/settings.h"
#include "refhost/accounting.h"
#include "refhost/backing_store.h"
#include "refhost/text.h"

namespace {

namespace fs = std::filesystem;

// The tree in `settings` saved to memory.
std::string Saved(Loom::Services::PersistentSettings& settings) {
  Loom::SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
  settings.setBackingStoreIO(store);
  FUZZ_REQUIRE(settings.saveSettings());
  std::string saved = store->xml();
  FUZZ_REQUIRE(!saved.empty());
  return saved;
}

// The tree of `xml` loaded from a document in memory and saved again, or nothing when it
// does not load.
std::optional<std::string> ResavedFromMemory(std::string_view xml) {
  Loom::SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
  if (!store->setXml(xml)) return std::nullopt;
  Loom::Services::PersistentSettings settings;
  settings.setBackingStoreIO(store);
  if (!settings.loadSettings()) return std::nullopt;
  return Saved(settings);
}

// The same, loaded from a file holding `xml`.
std::optional<std::string> ResavedFromFile(std::string_view xml) {
  static const fs::path file =
      fs::temp_directory_path() / ("fuzz_settings_" + std::to_string(getpid()) + ".xml");
  std::ofstream(file, std::ios::binary | std::ios::trunc)
      .write(xml.data(), static_cast<std::streamsize>(xml.size()));
  Loom::Services::PersistentSettings settings;
  settings.setBackingStoreIO(Loom::SmartPtr<Loom::Services::BackingStoreIO>(
      new Loom::Services::FileBackingStoreIO(Loom::File(refhost::Utf16(file.string())), 0, 1)));
  if (!settings.loadSettings()) return std::nullopt;
  return Saved(settings);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const long held = refhost::heldReferences();
  const std::string_view xml(reinterpret_cast<const char*>(data), size);
  const std::optional<std::string> saved = ResavedFromMemory(xml);
  FUZZ_REQUIRE(ResavedFromFile(xml) == saved);
  if (saved) {
    const std::optional<std::string> again = ResavedFromMemory(*saved);
    FUZZ_REQUIRE(again.has_value());
    FUZZ_REQUIRE(*again == *saved);
  }
  FUZZ_REQUIRE(refhost::heldReferences() == held);
  return 0;
}
