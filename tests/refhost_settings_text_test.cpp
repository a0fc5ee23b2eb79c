// A settings file's text into a tree: the reader of the host's own form against the
// general path (pugixml under the host's limits, then the build from its tree). What the
// form's reader takes, it must read exactly as the general path does; what it leaves, the
// general path alone decides, so the reader must leave everything it might read otherwise.
#include <gtest/gtest.h>

#include <string>

#include "refhost/settings_text.h"
#include "refhost/settings_tree.h"
#include "refhost/xml_text.h"
#include "support/sheet_test.h"
#include "support/xml_literals.h"

namespace {

using refhost::SettingsNode;
using testing_support::Dump;
using testing_support::Nested;
using testing_support::Repeat;

// The tree the general path reads from `xml`, or "unreadable".
std::string GeneralTree(const std::string& xml) {
  SettingsNode tree(nullptr, "");
  pugi::xml_document parsed;
  std::string error;
  int line = 0;
  if (!refhost::ParseXmlText(xml, parsed, refhost::kMaxXmlDepth, error, line) ||
      !refhost::SettingsFromXml(parsed.document_element(), tree)) {
    return "unreadable";
  }
  return Dump(tree);
}

// `levels` nested elements, the root included.
std::string Levels(int levels) {
  return "<settings>" + Nested("<item key='k'>", "</item>", levels - 1) + "</settings>";
}

std::string WithAttributes(int count) {
  std::string xml = "<settings><item key='k'";
  for (int i = 1; i < count; ++i) xml += " a" + std::to_string(i) + "='x'";
  return xml + "/></settings>";
}

TEST(RefhostSettingsTextTest, TheFormReaderReadsWhatItTakesAsTheGeneralPathDoes) {
  const struct {
    const char* name;
    std::string xml;
    std::string tree;
  } kCases[] = {
      {"as the host writes it",
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<settings value=\"r\">\n"
       "  <item key=\"T\">\n    <item key=\"B1\" value=\"Draft\" />\n  </item>\n</settings>\n",
       "=r{T={B1=Draft}}"},
      {"quotes, and '<' '>' in values",
       "<settings><item key='a\"b' value=\"it's <1> \"/></settings>", "={a\"b=it's <1> }"},
      {"entities and references",
       "<settings><item key='e' value='&lt;&gt;&amp;&quot;&apos;&#09;&#65;&#x42;&#xe9;&#128512;'/>"
       "</settings>",
       "={e=<>&\"'\tAB\xC3\xA9\xF0\x9F\x98\x80}"},
      {"line breaks and tabs as blanks, CR LF as one",
       "<settings><item key='w' value='a\tb\nc\rd\r\ne'/></settings>", "={w=a b c d e}"},
      {"text beyond ASCII", "<settings><item key='Gr\xC3\xBC\xC3\x9F" "e' value='\xE6\x97\xA5'/></settings>",
       "={Gr\xC3\xBC\xC3\x9F" "e=\xE6\x97\xA5}"},
      {"the later of an attribute given twice, the escaped form first",
       "<settings value='1' value='2'><item key='a' key='b' value='x' value-bytes='%41'"
       " other='&amp;'/></settings>",
       "=2{b=A}"},
      {"escaped bytes of a key", "<settings><item key='plain' key-bytes='d%00%25'/></settings>",
       std::string("={d") + '\0' + "%=}"},
      {"blanks wherever XML allows them",
       "\n <settings >\r\n<item\tkey = 'a'\nvalue= \"1\"/><item key='b'></item ></settings >\n ",
       "={a=1,b=}"},
      {"items of one key merged, the later value winning",
       "<settings><item key='a' value='1'><item key='x' value='1'/></item><item key='b'/>"
       "<item key='a' value='2'><item key='y'/><item key='x' value='2'/></item></settings>",
       "={a=2{x=2,y=},b=}"},
      {"an empty root", "<settings/>", "="},
      {"1000 levels", Levels(1000), GeneralTree(Levels(1000))},
      {"10000 attributes", WithAttributes(10'000), "={k=}"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    SettingsNode tree(nullptr, "");
    ASSERT_TRUE(refhost::SettingsFromHostForm(c.xml, tree));
    EXPECT_EQ(Dump(tree), c.tree);
    EXPECT_EQ(GeneralTree(c.xml), c.tree);
  }
}

TEST(RefhostSettingsTextTest, WhatTheFormReaderLeavesTheGeneralPathDecides) {
  const struct {
    const char* name;
    std::string xml;
    std::string tree;  // as the general path reads it
  } kCases[] = {
      {"a comment", "<settings><!-- c --><item key='a'/></settings>", "={a=}"},
      {"a document type", "<!DOCTYPE settings><settings/>", "="},
      {"a byte order mark", "\xEF\xBB\xBF<settings/>", "="},
      {"text in an item", "<settings><item key='a'>text</item></settings>", "={a=}"},
      {"another element", "<settings><other/><item key='a'/></settings>", "={a=}"},
      {"a declaration not first", " <?xml version='1.0'?><settings/>", "="},
      {"an entity pugixml does not know", "<settings><item key='a' value='&nbsp;'/></settings>",
       "={a=&nbsp;}"},
      {"a reference without ';'", "<settings><item key='a' value='&#65'/></settings>",
       "={a=&#65}"},
      {"an attribute name beyond ASCII",
       "<settings><item key='a' \xC3\xA4='1'/></settings>", "={a=}"},
      {"another root", "<other><item key='a'/></other>", "unreadable"},
      {"a reference to NUL", "<settings><item key='a' value='&#0;'/></settings>", "unreadable"},
      {"a reference in the declaration", "<?xml version='&#0;'?><settings/>", "unreadable"},
      {"a NUL", std::string("<settings><item key='a") + '\0' + "'/></settings>", "unreadable"},
      {"bytes that are not UTF-8", "<settings><item key='\xC3('/></settings>", "unreadable"},
      {"an end tag of another name", "<settings><item key='a'></settings></item>", "unreadable"},
      {"attributes without a blank between", "<settings><item key='a'value='1'/></settings>",
       "unreadable"},
      {"an unclosed value", "<settings><item key='a/></settings>", "unreadable"},
      {"no end", "<settings><item key='a'/>", "unreadable"},
      {"1001 levels", Levels(1001), "unreadable"},
      {"more than 250000 elements",
       "<settings>" + Repeat("<item/>", refhost::kMaxXmlElements) + "</settings>", "unreadable"},
      {"10001 attributes", WithAttributes(10'001), "unreadable"},
  };
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.name);
    SettingsNode tree(nullptr, "");
    EXPECT_FALSE(refhost::SettingsFromHostForm(c.xml, tree));
    EXPECT_EQ(Dump(tree), "=") << "nothing is left of what the reader began";
    EXPECT_EQ(GeneralTree(c.xml), c.tree);
  }
}

}  // namespace
