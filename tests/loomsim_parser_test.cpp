// The scenario parser: cutting files into statements, the canonical echo of the statement
// forms, and every error message a scenario writer can meet.
#include <gtest/gtest.h>

#include <set>
#include <utility>

#include "tools/loomsim/command_line.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/statement_reader.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

// Parses `written` as the statement reader hands it over: a " <<END" at its end is taken
// off and stands for a block.
Parsed Parse(std::string_view written) {
  constexpr std::string_view kOpensBlock = " <<END";
  const bool block = written.ends_with(kOpensBlock);
  if (block) written.remove_suffix(kOpensBlock.size());
  return ParseStatement(Facilities(), written,
                        block ? std::optional<Block>(Block{"END", 2, "<x/>\n"}) : std::nullopt);
}

std::string ErrorOf(std::string_view written) {
  try {
    Parse(written);
  } catch (const ParseError& error) {
    return StatementError(1, std::string(written), error).reason;
  }
  return "parsed";
}

TEST(StatementReaderTest, CutsStatementsCommentsAndBlocks) {
  const std::vector<SourceStatement> statements = ReadStatements(
      "# tour\r\n"
      "\n"
      "   prop a = \"1\"\n"
      "doc basic <<XUL\n"
      "  <window id=\"w\"/>\n"
      "  XUL\n"
      "#\n"
      "expect stdout \"<<END\"\n");
  ASSERT_EQ(statements.size(), 5u);
  EXPECT_TRUE(statements[0].comment);
  EXPECT_EQ(statements[0].text, "tour");
  EXPECT_EQ(statements[1].line, 3);
  EXPECT_EQ(statements[1].text, "prop a = \"1\"");
  EXPECT_EQ(statements[2].line, 4);
  EXPECT_EQ(statements[2].text, "doc basic");
  EXPECT_EQ(statements[2].written, "doc basic <<XUL");
  ASSERT_TRUE(statements[2].block);
  EXPECT_EQ(statements[2].block->marker, "XUL");
  EXPECT_EQ(statements[2].block->firstLine, 5);
  // Block lines keep their leading blanks; the closing line may be indented.
  EXPECT_EQ(statements[2].block->text, "  <window id=\"w\"/>\n");
  EXPECT_TRUE(statements[3].comment);
  EXPECT_EQ(statements[3].text, "");
  // A quoted "<<END" is text, not a block.
  EXPECT_FALSE(statements[4].block);
}

TEST(StatementReaderTest, BlockWithoutItsClosingLineIsAnError) {
  try {
    ReadStatements("prop a = \"1\"\nfile user:\"a\" <<EOF\nline\nEOFX\n");
    FAIL() << "no error";
  } catch (const StatementError& error) {
    EXPECT_EQ(error.line, 2);
    EXPECT_EQ(error.statement, "file user:\"a\" <<EOF");
    EXPECT_EQ(error.reason,
              "expected a line holding only EOF to close the block, found the end of the file");
  }
}

TEST(TextValuesTest, QuoteWritesWhatTheScenarioSyntaxReadsBack) {
  const struct {
    std::string bytes;
    std::string quoted;
  } kCases[] = {
      {"plain", "\"plain\""},
      {"a\"b\\c", "\"a\\\"b\\\\c\""},
      {"\n\r\t\x01\x7F", "\"\\n\\r\\t\\u0001\\u007F\""},
      {"\xC3\xA9\xF0\x9F\x98\x80", "\"\xC3\xA9\xF0\x9F\x98\x80\""},
      {"\xFF\xC3", "\"\\xFF\\xC3\""},
      {"\xC0\xAF", "\"\\xC0\\xAF\""},   // overlong '/'
      {"\xED\xA0\x80", "\"\\uD800\""},  // a lone surrogate as WTF-8
  };
  for (const auto& c : kCases) {
    EXPECT_EQ(Quote(c.bytes), c.quoted);
    EXPECT_EQ(Parse("expect stdout " + c.quoted).echo, "expect stdout " + c.quoted);
  }
  EXPECT_EQ(Quote(std::u16string(u"a\xD800z")), "\"a\\uD800z\"");
}

TEST(TextValuesTest, ReportValuesAreCutAfter200CharactersEscapedOnce) {
  const std::string a200(200, 'a');
  EXPECT_EQ(ReportValue(a200), Quote(a200));
  EXPECT_EQ(ReportValue(a200 + "b"), "\"" + a200 + "\u2026\" (201 bytes)");
  std::string quotes;
  for (int i = 0; i < 200; ++i) quotes += "\\\"";
  EXPECT_EQ(ReportValue(std::string(300, '"')), "\"" + quotes + "\u2026\" (300 bytes)");
  // Characters, not bytes: 201 two-byte letters are 402 bytes.
  std::string e201;
  for (int i = 0; i < 201; ++i) e201 += "\xC3\xA9";
  EXPECT_EQ(ReportValue(std::u16string(201, u'\u00e9')),
            "\"" + e201.substr(0, 400) + "\u2026\" (402 bytes)");
}

TEST(TextValuesTest, WideTextKeepsLoneSurrogatesAndRefusesOtherBadBytes) {
  EXPECT_EQ(WideText("\xED\xA0\x80x"), std::u16string(u"\xD800x"));
  EXPECT_EQ(WideText("\xF0\x9F\x98\x80"), std::u16string(u"\U0001F600"));
  EXPECT_FALSE(WideText("a\xFF"));
  EXPECT_FALSE(WideText("\xE2\x82"));  // cut short
  EXPECT_EQ(NarrowText(u"\xDC00\U0001F600"), "\xED\xB0\x80\xF0\x9F\x98\x80");
}

// The forms whose echo differs from what was written, and forms no scenario uses. That
// the others parse, the scenarios show; loomsim_run_test compares echoes in reports.
TEST(ParseTest, EveryFormReadsAndEchoesCanonically) {
  const struct {
    std::string_view written;
    std::string_view echo = {};  // empty: as written
  } kCases[] = {
      {"prop   loom.driver.name=\"K\"", "prop loom.driver.name = \"K\""},
      {"user file = \"x\""},
      {"port \"IP_10.0.0.1\""},
      {"rule rul_Change <<END"},
      {"call obj.abc()"},
      {"expect user#x present"},
      {"expect args.out_param absent"},
      {"expect file user:\"a\" contains \"x\""},
      {"expect archive user:\"e.cfp\" lacks \"M\""},
      {"expect no message"},
      {"user \"A\"/\"a/b\"/\"\" = \"\"", "user A/\"a/b\"/\"\" = \"\""},
      {"device PRODUCTCODE/ModelName = \"\\u00e9\"", "device PRODUCTCODE/ModelName = \"\xC3\xA9\""},
      {"set dlg#x.selected=\"true\"", "set dlg#x.selected = \"true\""},
      {"drawer  7 media -3", "drawer 7 media -3"},
      {"form \"Custom Paper Size 1\" 210000 +297000", "form \"Custom Paper Size 1\" 210000 297000"},
      {"printer \"K\\u00e9\"", "printer \"K\xC3\xA9\""},
      {"plugin \"Finishing Options\" enabled excludes \"Booklet\" pdl \"PS, PCLXL\" label \"F\"",
       "plugin \"Finishing Options\" enabled label \"F\" pdl \"PS,PCLXL\" excludes \"Booklet\""},
      {"plugin \"Booklet\" disabled label \"Booklet\" pdl \"\"", "plugin \"Booklet\" disabled"},
      {"strings \"$IDS_X;\" = \"\\u00e9\"", "strings \"$IDS_X;\" = \"\xC3\xA9\""},
      {"clock  \"2011-05-03 17:30:00\"", "clock \"2011-05-03 17:30:00\""},
      {"printerdata \"PrinterDriverData\"  \"Plugins\" = \"A B,C\"",
       "printerdata \"PrinterDriverData\" \"Plugins\" = \"A B,C\""},
      {"expect dialog \"d.xul\"  title \"$T;\"", "expect dialog \"d.xul\" title \"$T;\""},
      {"expect no  dialog", "expect no dialog"},
      {"expect plugin \"Effect\"  disabled", "expect plugin \"Effect\" disabled"},
      {"expect archive user:\"a.cfp\" member \"M\"  lacks \"x\"",
       "expect archive user:\"a.cfp\" member \"M\" lacks \"x\""},
      {"filedialog user:\"a/conf.cfu\""},
      {"filedialog  cancel", "filedialog cancel"},
      {"administrator yes"},
      {"windowclass \"StubWindow32\""},
      {"encryption \"a\"=\"b\"", "encryption \"a\" = \"b\""},
      {"expect filedialog save flags 0x1802 title \"Export\""},
      {"expect filedialog open flags 0x800", "expect filedialog open flags 0x0800"},
      {"expect user \"A B\"/C children==6", "expect user \"A B\"/C children == 6"},
      {"call Math.round(document,double(-2.5))", "call Math.round(document, double(-2.5))"},
      {"call x.m(basic, dlg#e, #e, \"t\\x00\", int(-2147483648), intref(+7), floatref(1.5e3), "
       "double(nan), nulldoc, nullelem, kind(4294967295))",
       "call x.m(basic, dlg#e, #e, \"t\\u0000\", int(-2147483648), intref(+7), floatref(1.5e3), "
       "double(nan), nulldoc, nullelem, kind(4294967295))"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.written);
    EXPECT_EQ(Parse(c.written).echo, c.echo.empty() ? c.written : c.echo);
  }
}

TEST(ParseTest, ErrorsNameWhatWasExpectedAndWhatStoodThere) {
  const struct {
    std::string_view written;
    std::string_view reason;
  } kCases[] = {
      {"prop = \"x\"", "expected a property key, found \"= \\\"x\\\"\""},
      {"prop a \"x\"", "expected '=' and a quoted text, found \"\\\"x\\\"\""},
      {"prop a = x", "expected a quoted text, found \"x\""},
      {"prop a = \"x", "expected a closing '\"' of the text, found \"\\\"x\""},
      {"prop a = \"\\q\"",
       "expected an escape: \\\" \\\\ \\n \\r \\t \\uXXXX or \\xHH, found \"\\\\q\\\"\""},
      {"prop a = \"\\xZ1\"", "expected two hexadecimal digits after \\x, found \"Z1\\\"\""},
      {"prop a = \"\\u12\"", "expected four hexadecimal digits after \\u, found \"12\\\"\""},
      {"user = \"x\"", "expected a settings path (keys joined by '/'), found \"= \\\"x\\\"\""},
      {"user A/ = \"x\"", "expected a settings path (keys joined by '/'), found \"= \\\"x\\\"\""},
      {"device A \"x\"",
       "expected '=' and a quoted text after the settings path, found \"\\\"x\\\"\""},
      {"doc basic", "expected file \"path.xul\" or a <<END block, found the end of the line"},
      {"doc <<END", "expected a document name, found the end of the line"},
      {"owner dlg", "expected the name of the document that opened it, found the end of the line"},
      {"set x.value = \"1\"",
       "expected '#' and an element id after the document name, found \".value = \\\"1\\\"\""},
      {"set #x = \"1\"", "expected '.' and an attribute name, found \"= \\\"1\\\"\""},
      {"file home:\"a\" <<END",
       "expected a place (user, driver, allusers, root), found \"home:\\\"a\\\"\""},
      {"file user\"a\" <<END",
       "expected ':' and a quoted path after the place, found \"\\\"a\\\"\""},
      {"file user:\"../a\" <<END",
       "expected a relative path that stays inside the place, found \"\\\"../a\\\"\""},
      {"file user:\"/etc/passwd\" <<END",
       "expected a relative path that stays inside the place, found \"\\\"/etc/passwd\\\"\""},
      {"file user:\"a\"", "expected a <<END block, found the end of the line"},
      {"prop a = \"1\" <<END",
       "expected the end of the statement: it takes no block, found \"<<END\""},
      {"archive user:\"a.zip\" \"M\" <<END",
       "expected member \"Name\" after the archive, found \"\\\"M\\\"\""},
      {"call", "expected an object name, found the end of the line"},
      {"call Math.round", "expected '(' and the arguments, found the end of the line"},
      {"call Math.round(document", "expected ',' or ')', found the end of the line"},
      {"call Math.round(document,)",
       "expected an argument: document, a document name, #id, NAME#id, \"text\", int(N), "
       "intref(N), floatref(X), double(X), nulldoc, nullelem or kind(K), found \")\""},
      {"call x.m(int(2147483648))",
       "expected an integer from -2147483648 to 2147483647, found \"2147483648))\""},
      {"call x.m(int(1.5))", "expected ')', found \".5))\""},
      {"call x.m(kind(-1))", "expected an argument kind from 0 to 4294967295, found \"-1))\""},
      {"call x.m(double(x))", "expected a number, found \"x))\""},
      {"expect result maybe", "expected true or false, found \"maybe\""},
      {"expect object Math present",
       "expected the quoted name of an object, found \"Math present\""},
      {"expect object \"Math\" there", "expected absent or present, found \"there\""},
      {"expect #x.value = \"3\"", "expected == \"text\", absent or present, found \"= \\\"3\\\"\""},
      {"expect #x empty",
       "expected .ATTR, selected, items, absent or present after the element, found \"empty\""},
      {"expect #x selected \"A\"", "expected == \"value\" after selected, found \"\\\"A\\\"\""},
      {"expect #x items == many", "expected a number of items, found \"many\""},
      {"expect vars prodType", "expected '.' and an attribute name, found \"prodType\""},
      {"expect file user:\"a\" there",
       "expected exists, absent, contains \"text\" or lacks \"text\", found \"there\""},
      {"expect archive user:\"a\" holds \"M\"",
       "expected has \"Member\", lacks \"Member\" or member \"Member\" contains|lacks "
       "\"text\", found \"holds \\\"M\\\"\""},
      {"expect refs even", "expected balanced, found \"even\""},
      {"rule <<END", "expected a rule name, found the end of the line"},
      {"drawer 8 media 9", "expected a drawer number from 1 to 7, found \"8 media 9\""},
      {"drawer 1 9", "expected media CODE after the drawer number, found \"9\""},
      {"form \"F\" 0 1",
       "expected a form width in thousandths of a millimetre from 1 to 2147483647, found \"0 1\""},
      {"printer \"\\xFF\"",
       "expected the quoted driver name of a printer in UTF-8, found \"\\\"\\\\xFF\\\"\""},
      {"shipment europe", "expected japan, northamerica or other, found \"europe\""},
      {"clock \"2011-5-03 17:30:00\"",
       "expected a quoted local time \"YYYY-MM-DD HH:MM:SS\", found \"\\\"2011-5-03 "
       "17:30:00\\\"\""},
      {"clock \"2011-05-03 24:00:00\"",
       "expected a quoted local time \"YYYY-MM-DD HH:MM:SS\", found \"\\\"2011-05-03 "
       "24:00:00\\\"\""},
      {"plugin \"X\" on", "expected enabled or disabled, found \"on\""},
      {"printerdata \"K\" \"V\" \"A\"",
       "expected '=' and the quoted entries, joined by ',', found \"\\\"A\\\"\""},
      {"expect dialog \"d.xul\" \"T\"",
       "expected title \"TEXT\" after the file name, found \"\\\"T\\\"\""},
      {"expect plugin \"X\" on", "expected enabled or disabled, found \"on\""},
      {"expect archive user:\"a\" member \"M\" has \"x\"",
       "expected contains \"text\" or lacks \"text\", found \"has \\\"x\\\"\""},
      {"plugin \"X\" enabled label \"a\" label \"b\"",
       "expected label \"text\", pdl \"A,B\" or excludes \"A,B\", each once, found \"label "
       "\\\"b\\\"\""},
      {"plugin \"X\" enabled pdl \"PS,,XPS\"",
       "expected the quoted printer languages, joined by ',' with no empty name, found "
       "\"\\\"PS,,XPS\\\"\""},
      {"strings \"$A;B;\" = \"x\"",
       "expected a quoted string reference \"$NAME;\", found \"\\\"$A;B;\\\" = \\\"x\\\"\""},
      {"registry user \"Software\\\\Spindle\" present",
       "expected a quoted registry key path: names joined by single '\\', no escapes, found "
       "\"\\\"Software\\\\\\\\Spindle\\\" present\""},
      {"expect registry machine \"A\" present",
       "expected user (the current user's hive) and a quoted key path, found "
       "\"machine \\\"A\\\" present\""},
      {"expect user A children 3", "expected == N after children, found \"3\""},
      {"filedialog later", "expected a place (user, driver, allusers, root), found \"later\""},
      {"expect filedialog print", "expected open or save, found \"print\""},
      {"administrator maybe", "expected yes or no, found \"maybe\""},
      {"expect filedialog open flags 1802", "expected flags as 0xHHHH, found \"1802\""},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.written);
    EXPECT_EQ(ErrorOf(c.written), c.reason);
  }
}

TEST(ParseTest, AnUnknownStatementListsWhatMayStandThere) {
  // Facilities add statements over time: the lists are checked for what they must hold.
  const std::string statement = ErrorOf("frobnicate x");
  EXPECT_TRUE(statement.starts_with("expected a statement: prop, user, device, expect, doc,"))
      << statement;
  for (const char* heads : {" uiarchive,", " rule, call"}) {
    EXPECT_NE(statement.find(heads), std::string::npos) << statement;
  }
  EXPECT_TRUE(statement.ends_with(", found \"frobnicate x\"")) << statement;
  for (const auto& [written, meant] :
       {std::pair<std::string_view, std::string_view>{"expect resul true", "expect result"},
        {"expect no scripts", "expect no script"}}) {
    const std::string expectation = ErrorOf(written);
    EXPECT_TRUE(
        expectation.starts_with("expected after \"expect\" one of: user, device, #id, "
                                "NAME#id, vars, args,"))
        << expectation;
    for (const char* choice : {" result,", " no script,", " no message"}) {
      EXPECT_NE(expectation.find(choice), std::string::npos) << expectation;
    }
    EXPECT_TRUE(expectation.ends_with(", found " + Quote(written.substr(7)) + ": did you mean " +
                                      std::string(meant) + "?"))
        << expectation;
  }
}

TEST(ParseTest, EveryHeadIsUniqueAndDocumented) {
  std::set<std::string_view> heads;
  for (const Facility& facility : Facilities()) {
    for (const StatementForm& form : facility.forms) {
      EXPECT_TRUE(heads.insert(form.head).second) << "two rows for " << form.head;
      // The head's first word leads its usage: --help and the documentation show it.
      EXPECT_TRUE(form.usage.starts_with(form.head.substr(0, form.head.find(' ')))) << form.usage;
    }
  }
}

TEST(CommandLineTest, ReadsCommandsAndOptions) {
  std::string error;
  std::optional<CommandLine> line = ParseCommandLine({}, error);
  ASSERT_TRUE(line);
  EXPECT_TRUE(line->files.empty());
  EXPECT_FALSE(line->options.quiet);
  line = ParseCommandLine({"run", "--quiet", "a.scn", "--library", "lib.so", "b.scn", "--keep"},
                          error);
  ASSERT_TRUE(line);
  EXPECT_EQ(line->files, (std::vector<std::filesystem::path>{"a.scn", "b.scn"}));
  EXPECT_TRUE(line->options.quiet);
  EXPECT_TRUE(line->options.keep);
  EXPECT_EQ(line->library, std::filesystem::path("lib.so"));
  EXPECT_TRUE(ParseCommandLine({"--help"}, error)->help);
  EXPECT_NE(HelpText().find("  expect #id items == N"), std::string::npos);

  const std::pair<std::vector<std::string>, std::string> kRejected[] = {
      {{"walk"}, "unknown command walk (the command is run)"},
      {{"run", "--fast"}, "unknown option --fast"},
      {{"--library"}, "--library needs the path of the library"},
      {{"run", "--quiet"}, "run needs at least one scenario file"},
  };
  for (const auto& [arguments, message] : kRejected) {
    error.clear();
    EXPECT_FALSE(ParseCommandLine(arguments, error));
    EXPECT_EQ(error, message);
  }
}

}  // namespace
}  // namespace loomsim
