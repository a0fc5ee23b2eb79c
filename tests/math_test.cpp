// The Math object: every number kind, the rounding halves, 32-bit overflow, and
// clampMultiple's arithmetic exactly as scripts rely on it.
#include <gtest/gtest.h>

#include <cmath>

#include "core/spindleui.h"
#include "host/codes.h"
#include "refhost/sheet.h"
#include "support/fixture.h"

namespace {

class MathTest : public testing_support::HostTest {
 protected:
  void SetUp() override {
    HostTest::SetUp();
    doc_ = sheet_.loadDocument(R"(<window id="w"><vbox id="vars"/></window>)", "math.xul");
  }
  void TearDown() override {
    doc_.reset();
    HostTest::TearDown();
  }

  // The "args" element's out_param, found as the host resolves it.
  std::u16string OutParam() {
    doc_->findElement(u"args", Loom::kSearchWholeDocument);
    auto args = doc_->takeFoundElement(Loom::kSearchWholeDocument);
    return std::u16string(args->getAttribute(u"out_param"));
  }
  void ResetOutParam() {
    doc_->findElement(u"args", Loom::kSearchWholeDocument);
    doc_->takeFoundElement(Loom::kSearchWholeDocument)->setAttribute(u"out_param", u"unset");
  }

  refhost::Sheet sheet_;
  Loom::SmartPtr<refhost::Document> doc_;
};

struct NumberCase {
  const char* what;
  refhost::Args number;  // one number record
  const char16_t* rounded;
};

TEST_F(MathTest, RoundReadsEveryNumberKindWithHalvesGoingUp) {
  NumberCase cases[] = {
      {"string half", refhost::Args().text("2.5"), u"3"},
      {"string leading number", refhost::Args().text("  3.7xyz"), u"4"},
      {"string without number", refhost::Args().text("abc"), u"0"},
      {"double negative half", refhost::Args().real(-2.5), u"-2"},
      {"double below half", refhost::Args().real(2.4999), u"2"},
      {"double -2.6", refhost::Args().real(-2.6), u"-3"},
      {"double out of range", refhost::Args().real(1e10), u"-2147483648"},
      {"double max int", refhost::Args().real(2147483647.0), u"2147483647"},
      {"negative half to zero", refhost::Args().real(-0.5), u"0"},
      {"not a number", refhost::Args().real(std::nan("")), u"-2147483648"},
      {"float by address", refhost::Args().floatRef(2.5f), u"3"},
      {"integer by address", refhost::Args().integerRef(-7), u"-7"},
  };
  for (NumberCase& c : cases) {
    ResetOutParam();
    refhost::Args args;
    args.document(doc_.get());
    args.raw(c.number.records()[0].kind, c.number.records()[0].value);
    EXPECT_TRUE(Call("Math", "round", args)) << c.what;
    EXPECT_EQ(OutParam(), c.rounded) << c.what;
  }
}

TEST_F(MathTest, UnreadableNumbersAnswerFalseAndWriteNothing) {
  // Kinds Math does not read, and the address kinds (and a string) without an address.
  const std::uint32_t kinds[] = {0,
                                 2,
                                 4,
                                 Loom::kArgDocument,
                                 Loom::kArgElement,
                                 9,
                                 Loom::kArgInteger,
                                 Loom::kArgString,
                                 Loom::kArgFloat};
  for (std::uint32_t kind : kinds) {
    ResetOutParam();
    EXPECT_FALSE(Call("Math", "round", refhost::Args().document(doc_.get()).raw(kind, 0))) << kind;
    EXPECT_FALSE(
        Call("Math", "clampMultiple", refhost::Args().document(doc_.get()).real(7).raw(kind, 0)))
        << kind;
    EXPECT_EQ(OutParam(), u"unset") << kind;
  }
}

TEST_F(MathTest, ClampMultipleKeepsItsArithmeticForEverySign) {
  struct Case {
    double value, step;
    const char16_t* result;
  } cases[] = {
      {12, 4, u"12"}, {13, 4, u"12"},  {14, 4, u"16"}, {7, 5, u"5"},
      {8, 5, u"10"},  {5, 2, u"6"},    {7.9, 5, u"5"}, {-7, 5, u"0"},
      {-8, 5, u"-5"}, {-12, 5, u"-5"}, {7, -5, u"0"},  {1e10, 3, u"-2147483646"},
  };
  for (const Case& c : cases) {
    EXPECT_TRUE(Call("Math", "clampMultiple",
                     refhost::Args().document(doc_.get()).real(c.value).real(c.step)))
        << c.value << " " << c.step;
    EXPECT_EQ(OutParam(), c.result) << c.value << " " << c.step;
  }
  EXPECT_TRUE(Call("Math", "clampMultiple",
                   refhost::Args().document(doc_.get()).text("14.9").integerRef(4)));
  EXPECT_EQ(OutParam(), u"16");
}

}  // namespace
