// The library's dispatchers, as a hostile script would reach them: up to eight calls per
// input, each to one of the 28 objects, with a method name from the object's table
// (dispatch_methods.h) or an arbitrary one, and an arbitrary argument list (any kinds,
// any count up to eight, strings of any bytes, null or real documents and elements of
// three loaded pages). After every call the library holds no host reference; an
// exception may escape (host exceptions pass through the library), a crash may not.
#include <fuzzer/FuzzedDataProvider.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <string>
#include <vector>

#include "fuzz/dispatch_methods.h"
#include "fuzz/fuzz_support.h"
#include "host/xclass.h"
#include "refhost/accounting.h"
#include "refhost/args.h"
#include "refhost/document.h"
#include "refhost/element.h"
#include "refhost/properties.h"
#include "refhost/sheet.h"

extern "C" xClass* findObject(const char* name);

namespace {

namespace fs = std::filesystem;

constexpr int kMaxCalls = 8;
constexpr int kMaxArgs = 8;
constexpr std::size_t kMaxText = 64;
constexpr const char* kPages[] = {"basic.xul", "bypass_confirm.xul", "custom_margin.xul"};
// Kinds the library reads, then kinds it never reads; any other 32-bit kind is drawn too.
constexpr std::uint32_t kKinds[] = {1, 3, 5, 6, 7, 8, 0, 2, 4};

void Collect(refhost::Element& element, std::vector<refhost::Element*>& all) {
  all.push_back(&element);
  for (std::size_t i = 0; i < element.childCount(); ++i) Collect(*element.childAt(i), all);
}

struct Pages {
  explicit Pages(const fs::path& places) {
    sheet.setDirectories((places / "root").u16string(), (places / "user").u16string(),
                         (places / "allusers").u16string());
    sheet.properties().set("loom.driver.name", "KESTREL MODEL H COLOR");
    sheet.properties().set("loom.user.path", (places / "user").string());
    sheet.properties().set("loom.driver.path", (places / "driver").string());
    for (const char* page : kPages) {
      documents.push_back(sheet.loadDocumentFile(fs::path(SPINDLE_SOURCE_DIR) / "samples" / page));
      Collect(documents.back()->root(), elements);
    }
  }
  refhost::Sheet sheet;
  std::vector<Loom::SmartPtr<refhost::Document>> documents;
  std::vector<refhost::Element*> elements;
};

// One argument record drawn from the input. `addresses`: the Math object reads kinds 1
// and 5 through the address in the value, every other object reads kind 1 inline.
void AddArgument(FuzzedDataProvider& input, const Pages& pages, bool addresses,
                 refhost::Args& args) {
  const std::uint32_t kind =
      input.ConsumeBool()
          ? kKinds[input.ConsumeIntegralInRange<std::size_t>(0, std::size(kKinds) - 1)]
          : input.ConsumeIntegral<std::uint32_t>();
  switch (kind) {
    case 1:
      addresses ? args.integerRef(input.ConsumeIntegral<std::int32_t>())
                : args.integer(input.ConsumeIntegral<std::int32_t>());
      break;
    case 3:
      args.text(input.ConsumeRandomLengthString(kMaxText));
      break;
    case 5:
      args.floatRef(input.ConsumeFloatingPoint<float>());
      break;
    case 6:
      args.real(input.ConsumeFloatingPoint<double>());
      break;
    case 7: {
      const std::size_t pick = input.ConsumeIntegralInRange<std::size_t>(0, pages.documents.size());
      args.document(pick < pages.documents.size() ? pages.documents[pick].get() : nullptr);
      break;
    }
    case 8: {
      const std::size_t pick = input.ConsumeIntegralInRange<std::size_t>(0, pages.elements.size());
      args.element(pick < pages.elements.size() ? pages.elements[pick] : nullptr);
      break;
    }
    default:
      args.raw(kind);
  }
}

std::string MethodName(FuzzedDataProvider& input, const fuzz::ObjectMethods& row) {
  if (!row.methods.empty() && input.ConsumeBool()) {
    return std::string(
        row.methods[input.ConsumeIntegralInRange<std::size_t>(0, row.methods.size() - 1)]);
  }
  return input.ConsumeRandomLengthString(kMaxText);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const fs::path places =
      fs::temp_directory_path() / ("fuzz_dispatch_" + std::to_string(getpid()));
  fs::remove_all(places);
  for (const char* place : {"root", "user", "allusers", "driver"}) {
    fs::create_directories(places / place);
  }
  FuzzedDataProvider input(data, size);
  const long heldBefore = refhost::heldReferences();
  {
    Pages pages(places);
    for (int call = 0; call < kMaxCalls && input.remaining_bytes() > 0; ++call) {
      const fuzz::ObjectMethods& row =
          fuzz::DispatchTable()[input.ConsumeIntegralInRange<std::size_t>(
              0, fuzz::DispatchTable().size() - 1)];
      const std::string object(row.object);
      const std::string method = MethodName(input, row);
      refhost::Args args;
      const int count = input.ConsumeIntegralInRange(0, kMaxArgs);
      for (int i = 0; i < count; ++i) AddArgument(input, pages, object == "Math", args);
      xClass* target = findObject(object.c_str());
      if (target == nullptr) continue;
      const long held = refhost::heldReferences();
      try {
        target->call(method.c_str(), args.count(), args.records(), nullptr);
      } catch (const std::exception&) {
      }
      FUZZ_REQUIRE(refhost::heldReferences() == held);
    }
  }
  FUZZ_REQUIRE(refhost::heldReferences() == heldBefore);
  return 0;
}
