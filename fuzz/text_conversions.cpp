// The text conversions of the library and the host on arbitrary bytes and code units:
// UTF-8 <-> UTF-16 either convert and come back exactly or throw utfcpp's exception; the
// number readers and formatters take anything; the length labels never show what is
// not a number.
#include <fuzzer/FuzzedDataProvider.h>
#include <utf8.h>

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string>

#include "core/text.h"
#include "fuzz/fuzz_support.h"
#include "paper/txt_preview.h"
#include "refhost/text.h"
#include "refhost/xml_text.h"

namespace {

void NarrowBytes(const std::string& bytes) {
  try {
    const Loom::wstring wide = spindle::Widen(bytes);
    FUZZ_REQUIRE(std::string(spindle::Narrow(wide)) == bytes);
    FUZZ_REQUIRE(refhost::Utf16(bytes) == wide);
  } catch (const utf8::exception&) {
    FUZZ_REQUIRE(!utf8::is_valid(bytes.begin(), bytes.end()));
  }
  if (refhost::XmlCanCarry(bytes)) FUZZ_REQUIRE(utf8::is_valid(bytes.begin(), bytes.end()));
  for (const char* unit : {"mm", "inch"}) {
    const std::string label = spindle::preview::LengthLabel(bytes.c_str(), unit);
    FUZZ_REQUIRE(label.find("nan") == std::string::npos);
    FUZZ_REQUIRE(label.find("inf") == std::string::npos);
  }
}

void WideUnits(const std::u16string& units) {
  try {
    const Loom::string narrow = spindle::Narrow(units);
    FUZZ_REQUIRE(std::u16string_view(spindle::Widen(narrow)) == units);
    FUZZ_REQUIRE(refhost::Utf8(units) == std::string_view(narrow));
  } catch (const utf8::exception&) {
  }
  spindle::LeadingInteger(units);
  const double number = spindle::LeadingNumber(units);
  spindle::FixedText(number, 2);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  const std::string bytes = input.ConsumeRandomLengthString(256);
  NarrowBytes(bytes);
  std::u16string units;
  while (input.remaining_bytes() >= 2) units.push_back(input.ConsumeIntegral<char16_t>());
  WideUnits(units);
  spindle::DecimalText(static_cast<std::int64_t>(size) - 128);
  return 0;
}
