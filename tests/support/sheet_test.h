// A property sheet of the reference host with one page, for the tests of script objects:
// the page comes from a XUL literal, calls take it as their first argument, and the
// fixture checks the reference balance (testing_support::HostTest).
#pragma once

#include <string>

#include "core/text.h"
#include "host/settings.h"
#include "refhost/args.h"
#include "refhost/sheet.h"
#include "support/fixture.h"

namespace testing_support {

// "key=value{children}", children comma-separated: a whole settings tree as one string.
inline std::string Dump(Loom::Services::PersistentItem& item) {
  std::string out = std::string(item.key()) + "=" + std::string(Loom::string(item));
  if (item.getNumChildren() == 0) return out;
  out += "{";
  for (std::size_t i = 0; i < item.getNumChildren(); ++i) {
    out += (i ? "," : "") + Dump(item.childAt(i));
  }
  return out + "}";
}

class SheetTest : public HostTest {
 protected:
  explicit SheetTest(const char* pageXul) : page_(sheet_.loadDocument(pageXul, "page.xul")) {}

  // Arguments starting with `doc` (the page by default).
  refhost::Args Doc(refhost::Document* doc = nullptr) {
    refhost::Args args;
    args.document(doc != nullptr ? doc : page_.get());
    return args;
  }
  Loom::SmartPtr<Loom::XUL::xXULElem> Elem(const char16_t* id) { return page_->getElementById(id); }
  // The "value" attribute of `id` in `doc` (the page by default), as UTF-8.
  std::string Value(const char16_t* id, refhost::Document* doc = nullptr) {
    doc = doc != nullptr ? doc : page_.get();
    return std::string(spindle::Narrow(doc->getElementById(id)->getAttribute(u"value")));
  }
  Loom::Services::PersistentSettings& user() { return sheet_.window().getSettings(); }
  Loom::Services::PersistentSettings& device() { return sheet_.window().getDevSettings(); }

  refhost::Sheet sheet_;
  Loom::SmartPtr<refhost::Document> page_;
};

}  // namespace testing_support
