// The reference host against hostile files and trees: nesting beyond the limit is refused
// with a clear error, wide and long documents load, and every writer either writes
// well-formed XML that reads back exactly or refuses before writing.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "host/settings.h"
#include "refhost/backing_store.h"
#include "refhost/document.h"
#include "refhost/dom.h"
#include "refhost/file_io.h"
#include "refhost/sheet.h"
#include "refhost/text.h"
#include "refhost/xml_text.h"
#include "support/sheet_test.h"
#include "support/xml_literals.h"

namespace {

namespace fs = std::filesystem;
using Loom::SmartPtr;
using Loom::Services::FileBackingStoreIO;
using Loom::Services::PersistentSettings;

using testing_support::Nested;
using testing_support::Repeat;

using HostileInputTest = testing_support::HostTest;

TEST_F(HostileInputTest, NestingBeyondTheLimitIsRefusedByEveryLoader) {
  std::string error;
  int line = 0;
  EXPECT_TRUE(refhost::ParseXml(Nested("<a>", "</a>", refhost::kMaxXmlDepth)));
  for (const int levels : {refhost::kMaxXmlDepth + 1, 1'000'000}) {
    EXPECT_FALSE(refhost::ParseXml("\n" + Nested("<a>", "</a>", levels), &error, &line));
    EXPECT_EQ(error, "elements nested deeper than 1000 levels");
    EXPECT_EQ(line, 2);
  }
  std::string attributes;
  for (int i = 0; i <= refhost::kMaxAttributes; ++i) attributes += " a" + std::to_string(i) + "=''";
  EXPECT_FALSE(refhost::ParseXml("<r>\n<a" + attributes + "/></r>", &error, &line));
  EXPECT_EQ(error, "an element with more than 10000 attributes");
  EXPECT_EQ(line, 2);
  refhost::Sheet sheet;
  EXPECT_TRUE(sheet.loadDocument(Nested("<box>", "</box>", refhost::kMaxPageDepth), "ok.xul"));
  EXPECT_THROW(
      sheet.loadDocument("<window>\n" + Repeat("<box/>", refhost::kMaxXmlElements) + "</window>",
                         "wide.xul"),
      refhost::LoadError);
  EXPECT_THROW(
      try {
        sheet.loadDocument(Nested("<box>", "</box>", 1'000'000), "deep.xul");
      } catch (const refhost::LoadError& fault) {
        EXPECT_STREQ(fault.what(), "deep.xul:1: elements nested deeper than 998 levels");
        throw;
      },
      refhost::LoadError);
  SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
  EXPECT_FALSE(store->setXml("<settings>" + Nested("<item key=\"k\">", "</item>", 1'000'000) +
                             "</settings>"));

  // A tree built deeper than a file may be is not written: it would not load again.
  SmartPtr<Loom::Dom::Node> top = Loom::Dom::createNode(u"a");
  for (int i = 0; i < refhost::kMaxXmlDepth; ++i) {
    SmartPtr<Loom::Dom::Node> parent = Loom::Dom::createNode(u"a");
    parent->children().append(top);
    top = parent;
  }
  EXPECT_FALSE(refhost::WriteXml(*top, &error));
  EXPECT_EQ(error, "elements nested deeper than 1000 levels");
}

// The limits are read from the text before parsing: what looks like tags inside quotes,
// comments, CDATA sections and processing instructions is not counted, and an element
// whose attribute value ends in "/" is not taken for an empty one.
TEST_F(HostileInputTest, LimitsCountOnlyRealTags) {
  const std::string markup = "<!-- <a><a> --><![CDATA[<a><a>]]><?pi <a><a>?>";
  const std::string top = "<r q='\">' p=\"/\">\n" + markup;
  const struct {
    std::string xml;
    std::string error;
    int line;
  } cases[] = {
      {top + Nested("<a>", "</a>", refhost::kMaxXmlDepth - 1) + "</r>", "", 0},
      {top + Nested("<a>", "</a>", refhost::kMaxXmlDepth) + "</r>",
       "elements nested deeper than 1000 levels", 2},
      {top + Repeat("<a x='<b/>'/>", refhost::kMaxXmlElements - 1) + "</r>", "", 0},
      {top + Repeat("<a/>", refhost::kMaxXmlElements) + "</r>", "more than 250000 elements", 2},
      // UTF-8, checked in runs: sequences across an eight-byte boundary, cut short
      // before ASCII, overlong.
      {"<r a='0123456\xc3\xa9\xe2\x82\xac\xf0\x9d\x84\x9e'>abcdefghijk</r>", "", 0},
      {"<r>0123456789\n\xc3\x28</r>", "invalid UTF-8", 2},
      {"<r>abcdefgh\n\n\xe2\x82</r>", "invalid UTF-8", 3},
      {"<r>\xc0\xaf</r>", "invalid UTF-8", 1},
      // Character references to a surrogate, NUL or beyond Unicode are refused; without
      // digits or ';' they are text.
      {"<r a='&#x10FFFF;&#9;'>\n&#xD7FF;&#;&#xD800 &#99999999999</r>", "", 0},
      {"<r>\n<a v='x&#xDBFF;'/></r>", "a character reference to U+DBFF, which XML cannot carry", 2},
      {"<r>\n\n&#0;</r>", "a character reference to U+0000, which XML cannot carry", 3},
      {"<r>&#99999999999;</r>",
       "a character reference to no Unicode character, which XML cannot carry", 1},
  };
  for (const auto& c : cases) {
    std::string error;
    int line = 0;
    EXPECT_EQ(refhost::IsReadableXml(c.xml, refhost::kMaxXmlDepth, error, line), c.error.empty());
    EXPECT_EQ(error, c.error);
    EXPECT_EQ(line, c.line);
  }
}

TEST_F(HostileInputTest, WideAndLongDocumentsLoadWhole) {
  constexpr int kSiblings = 200'000;
  std::string items;
  for (int i = 0; i < kSiblings; ++i) items += "<item key=\"" + std::to_string(i) + "\"/>";
  SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
  ASSERT_TRUE(store->setXml("<settings>" + items +
                            "<item key=\"7\" value=\"last\"><item key=\"x\"/></item>"
                            "<item key=\"7\"><item key=\"x\" value=\"2\"/></item></settings>"));
  PersistentSettings tree;
  tree.setBackingStoreIO(store);
  ASSERT_TRUE(tree.loadSettings());
  EXPECT_EQ(tree.getNumChildren(), static_cast<std::size_t>(kSiblings));
  // Items with the same key merge, the later value winning, also below a merged item.
  EXPECT_EQ(testing_support::Dump(tree.childAt(7)), "7={x=2}");

  refhost::Sheet sheet;
  const std::string longValue(10'000'000, 'v');
  SmartPtr<refhost::Document> page =
      sheet.loadDocument("<window><textbox id=\"t\" value=\"" + longValue + "\"/>" +
                             Repeat("<box/>", kSiblings) + "</window>",
                         "wide.xul");
  EXPECT_EQ(page->root().childCount(), static_cast<std::size_t>(kSiblings) + 1);
  EXPECT_EQ(page->elementById(u"t")->getAttribute(u"value").size(), longValue.size());
}

TEST_F(HostileInputTest, SettingsKeepEveryByteInWellFormedXml) {
  const fs::path file = fs::path(::testing::TempDir()) / ("hostile_" + std::to_string(getpid()));
  const Loom::File hostFile(refhost::Utf16(file.string()));
  PersistentSettings tree;
  tree = "root\x02";
  tree
      ["\x01"
       "ctl"] = "\x1f";
  tree["bad\xff"]["\xef\xbf\xbe"] = "\xef\xbf\xbf";  // U+FFFE, U+FFFF
  tree["50%"] = "a%41\xc3";
  tree["plain <&>"] = "tab\there";
  tree.setBackingStoreIO(SmartPtr<FileBackingStoreIO>(new FileBackingStoreIO(hostFile, 1, 0)));
  ASSERT_TRUE(tree.saveSettings());
#ifndef _WIN32  // xmllint is a Linux program; on Windows the exact bytes below must do
  EXPECT_EQ(std::system(("xmllint --noout " + file.string()).c_str()), 0);
#endif
  EXPECT_EQ(refhost::ReadWholeFile(file),
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<settings value-bytes=\"root%02\">\n"
            "  <item key-bytes=\"%01ctl\" value-bytes=\"%1F\" />\n"
            "  <item key-bytes=\"bad%FF\">\n"
            "    <item key-bytes=\"%EF%BF%BE\" value-bytes=\"%EF%BF%BF\" />\n"
            "  </item>\n"
            "  <item key=\"50%\" value-bytes=\"a%2541%C3\" />\n"
            "  <item key=\"plain &lt;&amp;>\" value=\"tab&#09;here\" />\n"
            "</settings>\n");
  PersistentSettings loaded;
  loaded.setBackingStoreIO(SmartPtr<FileBackingStoreIO>(new FileBackingStoreIO(hostFile, 0, 1)));
  ASSERT_TRUE(loaded.loadSettings());
  EXPECT_EQ(testing_support::Dump(loaded), testing_support::Dump(tree));
  fs::remove(file);
}

TEST_F(HostileInputTest, WritersRefuseNamesAndTextXmlCannotCarry) {
  const struct {
    Loom::wstring name;
    Loom::wstring value;
    const char* error;
  } rows[] = {
      {u"value", u"a\x01", "attribute value holds U+0001, which XML cannot carry"},
      {u"value", u"\xFFFE", "attribute value holds U+FFFE, which XML cannot carry"},
      {u"value", Loom::wstring(1, u'\xD800'),
       "attribute value holds U+D800, which XML cannot carry"},
      {u"a b", u"", "attribute name holds U+0020, which an XML name cannot"},
      {u"1st", u"", "attribute name holds U+0031, which an XML name cannot"},
      {u"", u"", "attribute name is empty"},
  };
  refhost::Sheet sheet;
  for (const auto& row : rows) {
    SmartPtr<Loom::Dom::Node> node = Loom::Dom::createNode(u"item");
    node->attributes().set(row.name, row.value);
    std::string error;
    EXPECT_FALSE(refhost::WriteXml(*node, &error));
    EXPECT_EQ(error, row.error);
    SmartPtr<refhost::Document> page = sheet.loadDocument("<window id=\"w\"/>", "p.xul");
    page->root().setAttribute(row.name, row.value);
    EXPECT_THROW(page->toXml(), refhost::XmlWriteError) << row.error;
  }
}

}  // namespace
