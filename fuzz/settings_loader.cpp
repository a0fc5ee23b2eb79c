// The settings-file loader on arbitrary text. A file that loads is saved; the saved text
// is well-formed (it parses), and loading it gives the same tree, which saves to the same
// text again. No reference is left held.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "fuzz/fuzz_support.h"
#include "host/settings.h"
#include "refhost/accounting.h"
#include "refhost/backing_store.h"

namespace {

// The tree of `xml` saved again, or nothing when it does not load.
std::optional<std::string> Resaved(std::string_view xml) {
  Loom::SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
  if (!store->setXml(xml)) return std::nullopt;
  Loom::Services::PersistentSettings settings;
  settings.setBackingStoreIO(store);
  if (!settings.loadSettings()) return std::nullopt;
  FUZZ_REQUIRE(settings.saveSettings());
  const std::string saved = store->xml();
  FUZZ_REQUIRE(!saved.empty());
  return saved;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const long held = refhost::heldReferences();
  const std::optional<std::string> saved =
      Resaved(std::string_view(reinterpret_cast<const char*>(data), size));
  if (saved) {
    const std::optional<std::string> again = Resaved(*saved);
    FUZZ_REQUIRE(again.has_value());
    FUZZ_REQUIRE(*again == *saved);
  }
  FUZZ_REQUIRE(refhost::heldReferences() == held);
  return 0;
}
