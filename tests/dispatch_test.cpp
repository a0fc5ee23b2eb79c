// The argument record's layout and the one dispatcher: matching by name, count and
// kinds, and the references of document and element arguments on every path.
#include "core/dispatch.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <stdexcept>

#include "core/arg_record.h"
#include "refhost/accounting.h"
#include "refhost/args.h"
#include "refhost/sheet.h"

namespace {

using spindle::Count;

TEST(ArgumentRecordTest, BuildersFillTheFieldsAsTheHostDoes) {
  refhost::Args args;
  args.integer(-1).real(-2.5).text("abc").integerRef(7).floatRef(1.5f);
  const xarg_entry* r = args.records();
  EXPECT_EQ(r[0].kind, 1u);
  EXPECT_EQ(r[0].value, 0xFFFFFFFFull) << "inline integers use the low half only";
  EXPECT_EQ(spindle::InlineInteger(r[0]), -1);
  EXPECT_EQ(r[1].kind, 6u);
  EXPECT_EQ(r[1].value, std::bit_cast<std::uint64_t>(-2.5));
  EXPECT_EQ(r[2].kind, 3u);
  EXPECT_STREQ(spindle::StringIn(r[2]), "abc");
  EXPECT_EQ(spindle::IntegerAt(r[3]), 7);
  EXPECT_EQ(spindle::FloatAt(r[4]), 1.5f);
  for (int i = 0; i < args.count(); ++i) EXPECT_EQ(r[i].extra, 0u);

  // A copy points at its own values, which outlive the original.
  refhost::Args copy;
  {
    refhost::Args original;
    original.text("kept").integerRef(9);
    copy = original;
  }
  EXPECT_STREQ(spindle::StringIn(copy.records()[0]), "kept");
  EXPECT_EQ(spindle::IntegerAt(copy.records()[1]), 9);
}

class Probe : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry*) override;
  bool Ran(spindle::CallArgs& args) {
    ran = args.count();
    heldDuringCall = refhost::heldReferences();
    return true;
  }
  bool Throws(spindle::CallArgs&) { throw std::runtime_error("host failure"); }

  int ran = -1;
  long heldDuringCall = 0;
  static const spindle::Method<Probe> kMethods[];
};

const spindle::Method<Probe> Probe::kMethods[] = {
    {{"exact", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}}, &Probe::Ran},
    {{"atLeast", Count::kAtLeast, 2, {Loom::kArgDocument, Loom::kArgString}}, &Probe::Ran},
    // The same name again with another count: reached only when the first does not match.
    {{"exact", Count::kExactly, 1, {Loom::kArgString}}, &Probe::Ran},
    {{"throws", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}}, &Probe::Throws},
};

bool Probe::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<Probe>(*this, kMethods, false, method, argc, args);
}

TEST(DispatchTest, MatchesNameCountAndKindsInTableOrder) {
  refhost::Sheet sheet;
  auto doc = sheet.loadDocument(R"(<window><label id="l"/></window>)", "p.xul");
  auto elem = doc->getElementById(u"l");
  struct Case {
    const char* method;
    refhost::Args args;
    int ran;  // argument count seen by the handler; -1: nothing ran
  } cases[] = {
      {"exact", refhost::Args().document(doc.get()).element(elem.get()), 2},
      {"exact", refhost::Args().document(nullptr).element(nullptr), 2},
      {"exact", refhost::Args().text("x"), 1},
      {"exact", refhost::Args().element(elem.get()).document(doc.get()), -1},
      {"exact", refhost::Args().document(doc.get()).element(elem.get()).text("x"), -1},
      {"exactX", refhost::Args().document(doc.get()).element(elem.get()), -1},
      {"Exact", refhost::Args().document(doc.get()).element(elem.get()), -1},
      {"atLeast", refhost::Args().document(doc.get()).text("a"), 2},
      {"atLeast", refhost::Args().document(doc.get()).text("a").integer(1).real(2), 4},
      {"atLeast", refhost::Args().document(doc.get()), -1},
      {"atLeast", refhost::Args().document(doc.get()).raw(Loom::kArgString, 0), -1},
      {"atLeast", refhost::Args().document(doc.get()).raw(2, 0), -1},
  };
  for (Case& c : cases) {
    Probe probe;
    const long held = refhost::heldReferences();
    EXPECT_EQ(probe.call(c.method, c.args.count(), c.args.records(), nullptr), c.ran >= 0)
        << c.method << "/" << c.args.count();
    EXPECT_EQ(probe.ran, c.ran) << c.method << "/" << c.args.count();
    EXPECT_EQ(refhost::heldReferences(), held);
  }
  Probe probe;
  EXPECT_FALSE(probe.call(nullptr, 0, nullptr, nullptr));
  EXPECT_FALSE(probe.call("exact", 1, nullptr, nullptr));
}

TEST(DispatchTest, TypedDocumentsAndElementsAreHeldForTheCallAndGivenBackOnEveryPath) {
  refhost::Sheet sheet;
  auto doc = sheet.loadDocument(R"(<window><label id="l"/></window>)", "p.xul");
  auto elem = doc->getElementById(u"l");
  refhost::Args args;
  args.document(doc.get()).element(elem.get());
  const long held = refhost::heldReferences();

  Probe probe;
  EXPECT_TRUE(probe.call("exact", args.count(), args.records(), nullptr));
  EXPECT_EQ(probe.heldDuringCall, held + 2);
  EXPECT_EQ(refhost::heldReferences(), held);

  EXPECT_THROW(probe.call("throws", args.count(), args.records(), nullptr), std::runtime_error);
  EXPECT_EQ(refhost::heldReferences(), held);
}

}  // namespace
