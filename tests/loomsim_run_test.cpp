// Running scenarios: the change report of a call, the reference check, the script
// executor, the expectations' failure messages and what counts in the summary.
//
// Scenarios run in process against the library's objects plus "probe", a test object
// that makes every kind of change a call can make.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "core/spindleui.h"
#include "host/codes.h"
#include "host/script.h"
#include "host/settings.h"
#include "refhost/accounting.h"
#include "refhost/document.h"
#include "tools/loomsim/call_watch.h"
#include "tools/loomsim/runner.h"
#include "tools/loomsim/scenario.h"

namespace loomsim {
namespace {

using Loom::SmartPtr;
using Loom::XUL::xXULDoc;
using Loom::XUL::xXULElem;

std::string Utf8Of(const Loom::wstring& text) { return std::string(text.begin(), text.end()); }

class Probe final : public xClass {
 public:
  bool call(const char* method, int, xarg_entry* args, xarg_entry*) override {
    xXULDoc& doc = *reinterpret_cast<xXULDoc*>(args[0].value);
    const std::string_view name = method;
    if (name == "edit") return Edit(doc);
    if (name == "leak") {
      (leaked_ = &doc)->addRef();
      return true;
    }
    if (name == "script") {
      return doc.getScriptEnv()->doString(reinterpret_cast<const char*>(args[1].value), "probe",
                                          nullptr);
    }
    if (name == "throw") throw std::runtime_error("boom");
    if (name == "fault") raise(SIGSEGV);  // as an invalid memory access in the library would
    return false;
  }

  // Gives back what "leak" took, so the test leaves the accounting as it found it.
  void Repair() {
    if (leaked_ != nullptr) std::exchange(leaked_, nullptr)->relRef();
  }

 private:
  static bool Edit(xXULDoc& doc) {
    SmartPtr<xXULElem> a = doc.getElementById(u"a");
    a->setAttribute(u"x", u"1");
    a->setAttribute(u"value", u"new");
    a->removeAttribute(u"gone");
    SmartPtr<xXULElem> list = doc.getElementById(u"list");
    SmartPtr<xXULElem> item = doc.createElement(Loom::kElemMenuItem);
    item->setAttribute(u"value", u"C");
    list->getChildAt(0)->appendChild(item.get());
    list->selMenulistWithVal(u"C");
    list->getChildAt(0)->removeChild(list->getChildAt(0)->getChildAt(0).get());
    Loom::XUL::xWindow& window = *doc.getXWindow();
    window.getSettings()["A"]["B"] = "1";
    window.getDevSettings()["PRODUCTCODE"]["ModelName"] = "KESTREL MODEL A COLOR";
    const std::string user = Utf8Of(doc.getUserDir());
    std::ofstream(user + "/out.txt") << "written";
    std::printf("hello\n");
    return true;
  }

  xXULDoc* leaked_ = nullptr;
};

Probe g_probe;

xClass* FindForTest(const char* name) {
  if (name != nullptr && std::strcmp(name, "probe") == 0) return &g_probe;
  return findObject(name);
}

int g_loads = 0;

LoadedLibrary LoadForTest() {
  ++g_loads;
  return {FindForTest, nullptr, {}};
}

constexpr char kPage[] = R"(doc page <<XUL
<window id="page">
  <vbox id="vars"/>
  <textbox id="a" value="old" gone="yes"/>
  <menulist id="list" value="A">
    <menupopup><menuitem value="A" selected="true"/><menuitem value="B"/></menupopup>
  </menulist>
</window>
XUL
)";

class RunTest : public ::testing::Test {
 protected:
  void TearDown() override {
    g_probe.Repair();
    EXPECT_EQ(refhost::heldReferences(), baseline_);
  }

  // Runs `text` as the scenario file "t.scn" and returns what was printed.
  std::string Run(const std::string& text, bool quiet = false, bool keep = false) {
    std::ostringstream out;
    Report report(out, quiet);
    RunScenario(FindForTest, "t.scn", text, RunOptions{quiet, keep}, report);
    passed_ = report.passed();
    failed_ = report.failed();
    return out.str();
  }
  // Runs `statements` after the page's "doc" statement (lines 1 to 9).
  std::string RunOnPage(const std::string& statements, bool quiet = false, bool keep = false) {
    return Run(kPage + statements, quiet, keep);
  }

  int passed_ = 0;
  int failed_ = 0;

 private:
  long baseline_ = refhost::heldReferences();
};

TEST_F(RunTest, ReportsEveryChangeOfACallOneALine) {
  const std::string out = RunOnPage("call probe.edit(document)\n");
  EXPECT_EQ(out,
            "== t.scn\n"
            "   1  doc page <<XUL\n"
            "  10  call probe.edit(document)\n"
            "          -> true\n"
            "          + page#a.x = \"1\"\n"
            "          ~ page#a.value = \"new\" (was \"old\")\n"
            "          - page#a.gone (was \"yes\")\n"
            "          + <menuitem value=\"C\"> added to page#list/menupopup\n"
            "          - page#list/menupopup/menuitem[1].selected (was \"true\")\n"
            "          + page#list/menupopup/menuitem[3].selected = \"true\"\n"
            "          ~ page#list.value = \"C\" (was \"A\")\n"
            "          + page#list.selectedIndex = \"2\"\n"
            "          - <menuitem value=\"A\"> removed from page#list/menupopup\n"
            "          + user A = \"\"\n"
            "          + user A/B = \"1\"\n"
            "          + device PRODUCTCODE = \"\"\n"
            "          + device PRODUCTCODE/ModelName = \"KESTREL MODEL A COLOR\"\n"
            "          + file user:\"out.txt\" (7 bytes)\n"
            "          > printed \"hello\\n\"\n");
  EXPECT_EQ(passed_, 1);  // the call's reference check
  EXPECT_EQ(failed_, 0);
}

TEST_F(RunTest, ALeakedReferenceFailsTheCallAndRefsBalancedSeesIt) {
  EXPECT_EQ(
      RunOnPage("expect refs balanced\ncall probe.leak(document)\nexpect refs balanced\n", true),
      "FAIL t.scn:11: expected no reference left held after call probe.leak(document), got 1 held\n"
      "FAIL t.scn:12: expected refs balanced, got 1 held\n");
  EXPECT_EQ(passed_, 1);
  EXPECT_EQ(failed_, 2);
}

TEST_F(RunTest, ExecutorRunsCallsAndRulesAndReportsTheRest) {
  const std::string out = RunOnPage(
      "rule r1 <<END\n"
      "obj.abc(7); rule r2;\n"
      "END\n"
      "rule r2 <<END\n"
      "call Math.round(document, '-0.5')\n"
      "END\n"
      "call probe.script(document, \"Math.round(document, 2.5); rule r1; "
      "frob(); nothere.m(list); obj.abc(zz); rule r9;\")\n"
      "expect result false\n"
      "expect script \"rule r1\"\n"
      "expect script \"obj.abc(zz);\"\n"
      "expect stdout \"value 7\\n\"\n");
  EXPECT_EQ(out.substr(out.find("  16  call")),
            "  16  call probe.script(document, \"Math.round(document, 2.5); rule r1; frob(); "
            "nothere.m(list); obj.abc(zz); rule r9;\")\n"
            "          -> false\n"
            "          > script \"Math.round(document, 2.5);\" -> true\n"
            "          + page args.out_param = \"3\"\n"
            "          > script \"rule r1;\" -> rule r1, 2 statement(s)\n"
            "          >   \"obj.abc(7);\" -> true\n"
            "          >   \"rule r2;\" -> rule r2, 1 statement(s)\n"
            "          >     \"call Math.round(document, '-0.5')\" -> true\n"
            "          ~ page args.out_param = \"0\" (was \"3\")\n"
            "          > script \"frob();\" -> not run: expected '.' and a method name, found "
            "\"();\"\n"
            "          > script \"nothere.m(list);\" -> no object nothere\n"
            "          > script \"obj.abc(zz);\" -> not run: no element zz in page\n"
            "          > script \"rule r9;\" -> not run: the scenario defines no rule r9\n"
            "          > printed \"value 7\\n\"\n"
            "  17  expect result false  ok\n"
            "  18  expect script \"rule r1\"  ok\n"
            "  19  expect script \"obj.abc(zz);\"  ok\n"
            "  20  expect stdout \"value 7\\n\"  ok\n");
  EXPECT_EQ(failed_, 0);
}

TEST_F(RunTest, RulesThatRunThemselvesStopAtTheDepthLimit) {
  const std::string out = RunOnPage(
      "rule loop <<END\nrule loop;\nEND\n"
      "call probe.script(document, \"rule loop;\")\n"
      "expect result false\n");
  EXPECT_NE(out.find("\"rule loop;\" -> not run: scripts nested more than 16 deep\n"),
            std::string::npos)
      << out;
  EXPECT_EQ(failed_, 0);
}

TEST_F(RunTest, FailedExpectationsSayWhatWasExpectedAndWhatWasThere) {
  const struct {
    std::string_view expectation;
    std::string_view failure;
  } kCases[] = {
      {"expect #a.value == \"new\"", "expected #a.value == \"new\", got \"old\""},
      {"expect #a.none == \"\"", "expected #a.none == \"\", got absent"},
      {"expect #a.gone absent", "expected #a.gone absent, got \"yes\""},
      {"expect #zz.value present", "expected #zz.value present, got no element #zz in page"},
      {"expect other#a present", "expected other#a present, got no document other"},
      {"expect #a absent", "expected #a absent, got present"},
      {"expect #list selected == \"B\"", "expected #list selected == \"B\", got \"A\""},
      {"expect #a selected == \"B\"",
       "expected #a selected == \"B\", got not a menu list or radio group"},
      {"expect #list items == 3", "expected #list items == 3, got 2"},
      {"expect user A/B == \"1\"", "expected user A/B == \"1\", got absent"},
      {"expect file user:\"f\" exists", "expected file user:\"f\" exists, got no such file"},
      {"expect archive user:\"z.zip\" has \"M\"",
       "expected archive user:\"z.zip\" has \"M\", got no archive: No such file"},
      {"expect object \"Math\" absent", "expected object \"Math\" absent, got present"},
      {"expect result true", "expected result true, got no call has been made yet"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.expectation);
    const std::string out = RunOnPage(std::string(c.expectation) + "\n", true);
    EXPECT_EQ(out.substr(0, out.find('\n')), "FAIL t.scn:10: " + std::string(c.failure));
    EXPECT_EQ(failed_, 1);
  }
}

TEST_F(RunTest, ExpectationsOnTheLastCall) {
  const std::string out = RunOnPage(
      "call obj.abc(int(5))\n"
      "expect stdout \"value 5\"\n"
      "expect no script\n"
      "expect no message\n"
      "expect no exception\n"
      "call probe.throw(document)\n"
      "expect result false\n"
      "expect exception \"boom\"\n"
      "expect no exception\n"
      "call probe.script(document, \"rule x;\")\n"
      "expect script \"rule y;\"\n"
      "expect message \"Hi\"\n",
      true);
  EXPECT_EQ(out,
            "FAIL t.scn:11: expected stdout \"value 5\", got \"value 5\\n\"\n"
            "FAIL t.scn:18: expected no exception, got \"boom\"\n"
            "FAIL t.scn:20: expected script \"rule y;\", got \"rule x;\"\n"
            "FAIL t.scn:21: expected message \"Hi\", got no message box\n");
  EXPECT_EQ(passed_, 5 + 3);  // five expectations and three reference checks
  EXPECT_EQ(failed_, 4);
}

TEST_F(RunTest, FileDialogExpectationsSeeOnlyTheLastCallsDialogs) {
  const std::string out = RunOnPage(
      "call xul_utils.openFileBrowser(document, \"save\", \"*.x\", #a)\n"
      "expect filedialog open\n"
      "call obj.abc(int(1))\n"
      "expect filedialog save\n",
      true);
  EXPECT_EQ(out,
            "FAIL t.scn:11: expected filedialog open, got save flags 0x1802 filter \"*.x\" -> "
            "cancelled\n"
            "FAIL t.scn:13: expected filedialog save, got no file dialog\n");
}

TEST_F(RunTest, SetupThatCannotBeDoneStopsTheFile) {
  const struct {
    std::string statements;  // after the page's
    std::string error;
  } kCases[] = {
      {"doc p <<X\n<window>\n  <vbox>\n</window>\nX\ncall obj.abc(int(1))\n",
       "ERROR t.scn:10: doc p <<X\n      bad XUL at line 13: Start-end tags mismatch\n"},
      {"doc p <<X\n<window>\n<a x=\"\xFF\"/></window>\nX\n",
       "ERROR t.scn:10: doc p <<X\n      bad XUL at line 12: invalid UTF-8\n"},
      {"settingsfile user:\"a.xml\" <<X\n<settings>\n<item key=\"a\">\nX\n",
       "ERROR t.scn:10: settingsfile user:\"a.xml\" <<X\n"
       "      the block is no XML at line 12: Start-end tags mismatch\n"},
      {"set #zz.value = \"1\"\ncall obj.abc(int(1))\n",
       "ERROR t.scn:10: set #zz.value = \"1\"\n      no element #zz in page\n"},
      {"set #list.value = \"Z\"\n",
       "ERROR t.scn:10: set #list.value = \"Z\"\n"
       "      the list has no item with the value \"Z\"\n"},
      {"set #a.value = \"\\xFF\"\n",
       "ERROR t.scn:10: set #a.value = \"\\xFF\"\n"
       "      the text \"\\xFF\" is not UTF-8: no attribute can hold it\n"},
      {kPage, "ERROR t.scn:10: doc page <<XUL\n      a document named page exists already\n"},
      {"owner page page\n",
       "ERROR t.scn:10: owner page page\n"
       "      a document cannot own itself, directly or through others\n"},
      {"user file \"missing.xml\"\n",
       "ERROR t.scn:10: user file \"missing.xml\"\n"
       "      cannot read missing.xml: No such file or directory\n"},
      // The whole file is read before anything runs.
      {"call obj.abc(int(1))\nprop a = \"1\" b\ncall obj.abc(int(1))\n",
       "ERROR t.scn:11: prop a = \"1\" b\n      expected the end of the statement, found \"b\"\n"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.statements);
    EXPECT_EQ(RunOnPage(c.statements, true), c.error);
    EXPECT_EQ(passed_, 0);  // nothing after the error ran
    EXPECT_EQ(failed_, 1);
  }
}

TEST_F(RunTest, ACrashInTheLibraryStopsTheFileNotTheRunner) {
  const std::string kCrashed =
      "      the library crashed: invalid memory access (SIGSEGV); what follows could not be "
      "trusted\n";
  EXPECT_EQ(RunOnPage("call probe.fault(document)\nexpect result true\n", true),
            "ERROR t.scn:10: call probe.fault(document)\n" + kCrashed);
  EXPECT_EQ(failed_, 1);
  // Also when the fault comes in a call the library makes back through a script.
  EXPECT_EQ(RunOnPage("call probe.script(document, \"probe.fault(document);\")\n", true),
            "ERROR t.scn:10: call probe.script(document, \"probe.fault(document);\")\n" + kCrashed);
  // The runner goes on with the next file as before.
  RunOnPage("call Math.round(document, \"1.5\")\nexpect args.out_param == \"2\"\n");
  EXPECT_EQ(failed_, 0);
}

TEST_F(RunTest, PlacesAndPropertiesPointIntoTheScenariosOwnTree) {
  const std::string kept = RunOnPage(
      "call probe.edit(document)\nexpect file user:\"out.txt\" contains \"written\"\n", true, true);
  EXPECT_EQ(failed_, 0) << kept;
  const std::string prefix = "kept the directory tree of t.scn in ";
  ASSERT_EQ(kept.rfind(prefix, 0), 0u) << kept;
  const std::filesystem::path tree = kept.substr(prefix.size(), kept.size() - prefix.size() - 1);
  EXPECT_TRUE(std::filesystem::exists(tree / "user" / "out.txt"));
  EXPECT_TRUE(std::filesystem::is_directory(tree / "driver"));
  std::filesystem::remove_all(tree);
}

TEST_F(RunTest, MessageBoxesFedByTheSimulatedOsAreReportedWithTheCall) {
  std::ostringstream out;
  Report report(out, true);
  Scenario scenario(FindForTest, "t.scn", report);
  scenario.messageBoxes().Shown("before the call");
  CallWatch watch(scenario);
  scenario.messageBoxes().Shown("Enter a nick name");
  const std::vector<std::string> lines = watch.Finish();
  EXPECT_EQ(lines, std::vector<std::string>{"! message \"Enter a nick name\""});
  EXPECT_EQ(scenario.lastCall().messages, std::vector<std::string>{"Enter a nick name"});
}

TEST_F(RunTest, EveryStatementThatDoesNotParseIsListedUpToTwenty) {
  // A byte order mark an editor put first is no part of the first statement.
  std::string text = "\xEF\xBB\xBFprop a = \"1\"\n";
  for (int i = 0; i < 25; ++i) text += "cal x\n";
  const std::string out = Run(text, true);
  EXPECT_EQ(failed_, 20);
  EXPECT_EQ(out.find("t.scn:1:"), std::string::npos) << out;
  EXPECT_NE(out.find("ERROR t.scn:21: cal x\n      expected a statement: "), std::string::npos);
  EXPECT_NE(out.find("found \"cal x\": did you mean call?\n"), std::string::npos);
  EXPECT_EQ(out.find("t.scn:22:"), std::string::npos);
  EXPECT_NE(out.find("stopped reading after 20 statements that do not parse"), std::string::npos);
}

TEST_F(RunTest, TheLibrarysReasonStandsUnderAnUnmatchedCall) {
  setDiagnosticsHook(NoteUnmatchedCall);
  const std::string out = RunOnPage("call Math.round(#a, double(1))\nexpect reason \"x\"\n");
  setDiagnosticsHook(nullptr);
  const std::string reason =
      "no method matched Math.round(element, double): did you mean round(document, number)? "
      "argument 1 is element, not document";
  EXPECT_NE(out.find("-> false\n          ? " + reason + "\n"), std::string::npos) << out;
  EXPECT_NE(out.find("expected reason \"x\", got \"" + reason + "\""), std::string::npos);
}

TEST_F(RunTest, SummaryAndExitStatusCountEveryFile) {
  const std::filesystem::path directory =
      std::filesystem::temp_directory_path() / ("loomsim_run_test_" + std::to_string(getpid()));
  std::filesystem::create_directories(directory);
  std::ofstream(directory / "good.scn") << "call obj.abc(int(1))\nexpect result true\n";
  std::ofstream(directory / "bad.scn") << "expect object \"Math\" absent\n";
  const std::vector<std::filesystem::path> good = {directory / "good.scn"};
  const std::vector<std::filesystem::path> all = {directory / "good.scn", directory / "bad.scn",
                                                  directory / "missing.scn"};
  std::ostringstream out;
  g_loads = 0;
  EXPECT_TRUE(RunScenarioFiles(LoadForTest, good, RunOptions{true, false}, out));
  EXPECT_EQ(out.str(), "2 passed, 0 failed\n");
  EXPECT_EQ(g_loads, 1);
  out.str("");
  EXPECT_FALSE(RunScenarioFiles(LoadForTest, all, RunOptions{true, false}, out));
  EXPECT_NE(
      out.str().find("ERROR " + (directory / "missing.scn").string() +
                     ": cannot read the file: No such file or directory\n2 passed, 2 failed\n"),
      std::string::npos)
      << out.str();
  EXPECT_EQ(g_loads, 3);  // once more per file that could be read
  std::filesystem::remove_all(directory);
}

}  // namespace
}  // namespace loomsim
