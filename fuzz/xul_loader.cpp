// The XUL loader on arbitrary text: a page loads or is refused with LoadError; a page
// that loads is written back (or refused whole with XmlWriteError), and what is written
// loads again to the same text. No reference is left held.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_support.h"
#include "refhost/accounting.h"
#include "refhost/document.h"
#include "refhost/sheet.h"
#include "refhost/xml_text.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const long held = refhost::heldReferences();
  {
    refhost::Sheet sheet;
    const std::string text(reinterpret_cast<const char*>(data), size);
    try {
      const Loom::SmartPtr<refhost::Document> page = sheet.loadDocument(text, "fuzz.xul");
      std::string written;
      try {
        written = page->toXml();
      } catch (const refhost::XmlWriteError&) {
        return 0;
      }
      const Loom::SmartPtr<refhost::Document> again = sheet.loadDocument(written, "again.xul");
      FUZZ_REQUIRE(again->toXml() == written);
    } catch (const refhost::LoadError&) {
    }
  }
  FUZZ_REQUIRE(refhost::heldReferences() == held);
  return 0;
}
