// The reference host's live XUL side: codes, id index, element lifetime, list helpers,
// loading errors, owners, the serialiser and defaults.
#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "refhost/accounting.h"
#include "refhost/backing_store.h"
#include "refhost/file_io.h"
#include "refhost/sheet.h"
#include "refhost/text.h"
#include "refhost/xul_codes.h"

namespace {

using Loom::SmartPtr;
using Loom::wstring;
using Loom::XUL::xXULElem;
using refhost::Document;
using refhost::Element;

constexpr std::string_view kPage = R"(<window id="basic">
  <vbox id="vars"/>
  <textbox id="edt_Name" value="Ann" onchange="x();"/>
  <checkbox id="chk_Duplex" checked="true"/>
  <menulist id="cmb_Bin" value="B" selectedIndex="1">
    <menupopup>
      <menuitem value="A" label="Auto"/>
      <menuitem value="B" label="Drawer" selected="true"/>
      <menuitem value="C" label="Tray"/>
    </menupopup>
  </menulist>
  <radiogroup id="rdg_Side" value="L">
    <hbox><radio value="L" selected="true"/><radio value="R"/></hbox>
    <radiogroup id="rdg_Inner"><radio value="X"/></radiogroup>
  </radiogroup>
  <tabbox id="tab_Paper"><textbox id="edt_Width" value="210"/></tabbox>
</window>)";

class RefhostXulTest : public ::testing::Test {
 protected:
  void SetUp() override {
    references_ = refhost::heldReferences();
    objects_ = refhost::liveBaseObjects();
  }
  void TearDown() override {
    EXPECT_EQ(refhost::heldReferences(), references_) << "references left held";
  }

  SmartPtr<Document> Load(std::string_view xml = kPage) {
    return sheet_.loadDocument(xml, "basic.xul");
  }
  static Element* Find(Document& doc, std::u16string_view id) { return doc.elementById(id); }
  static std::u16string Attr(const Element* element, std::u16string_view name) {
    const std::u16string* value = element->findAttribute(name);
    return value != nullptr ? *value : u"<absent>";
  }

  long references_ = 0;
  long objects_ = 0;
  refhost::Sheet sheet_;
};

TEST_F(RefhostXulTest, EveryAttributeCodeAndItsNameAreOneAttribute) {
  SmartPtr<Document> doc = Load();
  Element* box = Find(*doc, u"vars");
  for (const refhost::AttributeNameRow& row : refhost::AttributeNameTable()) {
    const wstring name(row.name);
    box->setAttr(row.code, u"by code");
    EXPECT_EQ(box->getAttribute(name), u"by code") << refhost::Utf8(row.name);
    box->setAttribute(name, u"by name");
    EXPECT_EQ(box->getAttr(row.code), u"by name") << refhost::Utf8(row.name);
  }
  EXPECT_EQ(box->attributes().size(), refhost::AttributeNameTable().size());
  box->setAttr(9999, u"lost");
  EXPECT_EQ(box->getAttr(9999), u"");
  EXPECT_EQ(box->attributes().size(), refhost::AttributeNameTable().size());
}

TEST_F(RefhostXulTest, EveryTagHasItsTypeAndCreatedElementsUseTheFirstTagOfTheirType) {
  SmartPtr<Document> doc = Load();
  for (const refhost::ElementTagRow& row : refhost::ElementTagTable()) {
    EXPECT_EQ(refhost::ElementTypeOfTag(row.tag), row.type) << refhost::Utf8(row.tag);
    SmartPtr<xXULElem> created = doc->createElement(row.type);
    ASSERT_NE(created, nullptr);
    EXPECT_EQ(created->getType(), row.type);
    EXPECT_EQ(static_cast<Element*>(created.get())->tagName(), refhost::TagOfElementType(row.type));
  }
  EXPECT_EQ(doc->createElement(Loom::kElemUnknown), nullptr);
  SmartPtr<Document> odd = Load("<window><html:div id='d'/></window>");
  EXPECT_EQ(Find(*odd, u"d")->getType(), Loom::kElemUnknown);
  EXPECT_EQ(Find(*odd, u"d")->tagName(), u"html:div");
}

TEST(RefhostReadmeTest, ListsEveryRowOfTheCodeTables) {
  const std::optional<std::string> readme = refhost::ReadWholeFile(
      std::filesystem::path(__FILE__).parent_path().parent_path() / "refhost" / "README.md");
  ASSERT_TRUE(readme.has_value());
  const auto row = [](int code, std::u16string_view name) {
    return "| " + std::to_string(code) + " | `" + refhost::Utf8(name) + "` |";
  };
  for (const refhost::ElementTagRow& r : refhost::ElementTagTable()) {
    EXPECT_NE(readme->find(row(r.type, r.tag)), std::string::npos) << row(r.type, r.tag);
  }
  for (const refhost::AttributeNameRow& r : refhost::AttributeNameTable()) {
    EXPECT_NE(readme->find(row(r.code, r.name)), std::string::npos) << row(r.code, r.name);
  }
}

TEST_F(RefhostXulTest, IdIndexFollowsIdChangesAndStructure) {
  SmartPtr<Document> doc = Load();
  SmartPtr<xXULElem> name = doc->getElementById(u"edt_Name");
  name->setAttribute(u"id", u"edt_Renamed");
  EXPECT_EQ(doc->getElementById(u"edt_Name"), nullptr);
  EXPECT_EQ(doc->getElementById(u"edt_Renamed"), name);

  Element& root = doc->root();
  EXPECT_TRUE(root.removeChild(name.get()));
  EXPECT_FALSE(root.removeChild(name.get()));
  EXPECT_EQ(doc->getElementById(u"edt_Renamed"), nullptr);
  name->removeAttribute(u"id");
  name->setAttribute(u"id", u"edt_Back");
  EXPECT_EQ(doc->getElementById(u"edt_Back"), nullptr) << "a detached element is not indexed";
  EXPECT_TRUE(Find(*doc, u"tab_Paper")->appendChild(name.get()));
  EXPECT_EQ(doc->getElementById(u"edt_Back"), name);

  SmartPtr<xXULElem> twin = doc->createElement(Loom::kElemTextbox);
  twin->setAttribute(u"id", u"edt_Width");
  EXPECT_TRUE(root.appendChild(twin.get()));
  EXPECT_EQ(doc->getElementById(u"edt_Width")->getAttribute(u"value"), u"210")
      << "the first in document order wins";
  EXPECT_FALSE(name->appendChild(&root)) << "an ancestor cannot be moved below its descendant";
  EXPECT_FALSE(root.appendChild(&doc->argsElement()));
}

TEST_F(RefhostXulTest, FindElementResolvesArgsButGetElementByIdDoesNot) {
  SmartPtr<Document> doc = Load(R"(<window><vbox id="args"/><vbox id="vars"/></window>)");
  doc->findElement(u"args", Loom::kSearchWholeDocument);
  SmartPtr<xXULElem> args = doc->takeFoundElement(Loom::kSearchWholeDocument);
  EXPECT_EQ(args.get(), &doc->argsElement());
  EXPECT_EQ(args->getType(), Loom::kElemArgs);
  EXPECT_EQ(doc->takeFoundElement(Loom::kSearchWholeDocument), nullptr) << "handed over once";
  EXPECT_NE(doc->getElementById(u"args"), args) << "the tree's own element, not the argument one";
  doc->findElement(u"vars", Loom::kSearchWholeDocument);
  EXPECT_EQ(doc->takeFoundElement(Loom::kSearchWholeDocument), doc->getElementById(u"vars"));
  doc->findElement(u"nothing", Loom::kSearchWholeDocument);
  EXPECT_EQ(doc->takeFoundElement(Loom::kSearchWholeDocument), nullptr);
}

TEST_F(RefhostXulTest, RemovedElementLivesWhileHeldAndOutlivesItsDocument) {
  {
    std::optional<refhost::Sheet> sheet(std::in_place);
    SmartPtr<xXULElem> kept;
    {
      SmartPtr<Document> doc = sheet->loadDocument(kPage, "basic.xul");
      kept = doc->getElementById(u"tab_Paper");
      SmartPtr<xXULElem> removed = doc->getElementById(u"edt_Name");
      ASSERT_TRUE(doc->root().removeChild(removed.get()));
      EXPECT_EQ(static_cast<Element*>(removed.get())->parent(), nullptr);
      EXPECT_EQ(removed->getOwnerDocument(), doc);
      EXPECT_EQ(removed->getAttribute(u"value"), u"Ann");
      const long objects = refhost::liveBaseObjects();
      removed.reset();
      EXPECT_EQ(refhost::liveBaseObjects(), objects - 1) << "freed with its last reference";
    }
    EXPECT_EQ(kept->getNumChildren(), 1);
    EXPECT_GT(refhost::liveBaseObjects(), objects_);
    // The sheet goes with the document; the held element stays usable on its own.
    sheet.reset();
    EXPECT_EQ(kept->getOwnerDocument(), nullptr);
    EXPECT_EQ(static_cast<Element*>(kept.get())->parent(), nullptr);
    kept->setAttribute(u"value", u"after");
    EXPECT_EQ(kept->getChildAt(0)->getAttribute(u"value"), u"210");
  }
  EXPECT_EQ(refhost::liveBaseObjects(), objects_) << "everything freed with the last reference";
}

struct MenuCase {
  const char* name;
  std::u16string select;  // by value; "#N" selects by position N
  bool answer;
  std::u16string selectedFlags;  // the items' selected attributes, '-' for absent
  std::u16string listValue;
  std::u16string listIndex;
};

TEST_F(RefhostXulTest, MenuListSelectionKeepsFlagsValueAndIndexTogether) {
  const MenuCase cases[] = {
      {"by value", u"C", true, u"--t", u"C", u"2"},
      {"first item", u"A", true, u"t--", u"A", u"0"},
      {"missing value changes nothing", u"Z", false, u"-t-", u"B", u"1"},
      {"by position", u"#0", true, u"t--", u"A", u"0"},
      {"position past the end", u"#3", false, u"-t-", u"B", u"1"},
      {"negative position", u"#-1", false, u"-t-", u"B", u"1"},
  };
  for (const MenuCase& c : cases) {
    SCOPED_TRACE(c.name);
    SmartPtr<Document> doc = Load();
    Element* list = Find(*doc, u"cmb_Bin");
    const bool answer = c.select[0] == u'#'
                            ? list->setSelectedIndex(std::stoi(refhost::Utf8(c.select.substr(1))))
                            : list->selMenulistWithVal(wstring(c.select));
    EXPECT_EQ(answer, c.answer);
    std::u16string flags;
    for (Element* item : list->menuItems()) {
      const std::u16string* selected = item->findAttribute(u"selected");
      flags += selected == nullptr ? u'-' : (*selected == u"true" ? u't' : u'?');
    }
    EXPECT_EQ(flags, c.selectedFlags);
    EXPECT_EQ(Attr(list, u"value"), c.listValue);
    EXPECT_EQ(Attr(list, u"selectedIndex"), c.listIndex);
    EXPECT_EQ(std::u16string_view(list->getValfromMenulist()), c.listValue);
    EXPECT_EQ(list->getSelectedIndex(), std::stoi(refhost::Utf8(c.listIndex)));
  }
}

TEST_F(RefhostXulTest, MenuListItemsComeFromItsItemList) {
  SmartPtr<Document> doc = Load(
      R"(<window><menulist id="l"><menupopup><menuitem value="A"/><menuitem value="A"/>
         <separator/><menuitem value="B"/></menupopup></menulist><menulist id="bare"/></window>)");
  Element* list = Find(*doc, u"l");
  Loom::XUL::ElemList items(1);
  EXPECT_TRUE(list->getChildrenOfType(Loom::kElemMenuItem, items));
  EXPECT_EQ(items.size(), 3u);
  EXPECT_TRUE(list->hideMenuItemByVal(u"A"));
  EXPECT_EQ(items[0]->getAttr(Loom::kAttrHidden), u"true");
  EXPECT_EQ(items[1]->getAttr(Loom::kAttrHidden), u"true");
  EXPECT_EQ(items[2]->getAttr(Loom::kAttrHidden), u"");
  EXPECT_FALSE(list->hideMenuItemByVal(u"Z"));
  EXPECT_EQ(list->getValfromMenulist(), u"");
  EXPECT_EQ(list->getSelectedIndex(), -1);
  EXPECT_FALSE(Find(*doc, u"bare")->getChildrenOfType(Loom::kElemMenuItem, items));
  EXPECT_TRUE(items.empty());
}

TEST_F(RefhostXulTest, RadioGroupSelectsAmongItsOwnRadiosInsideBoxes) {
  SmartPtr<Document> doc = Load();
  Element* group = Find(*doc, u"rdg_Side");
  EXPECT_EQ(group->getValFromRadioGroup(), u"L");
  EXPECT_EQ(group->getRadioGroupItemWithValue(u"R"), 1);
  EXPECT_EQ(group->getRadioGroupItemWithValue(u"X"), -1) << "the nested group's radio";
  EXPECT_FALSE(group->setRadioGroupWithVal(u"X"));
  EXPECT_EQ(Attr(group, u"value"), u"L");
  EXPECT_TRUE(group->setRadioGroupWithVal(u"R"));
  const std::vector<Element*> radios = group->radios();
  EXPECT_EQ(Attr(radios[0], u"selected"), u"<absent>");
  EXPECT_EQ(Attr(radios[1], u"selected"), u"true");
  EXPECT_EQ(Attr(group, u"value"), u"R");
  EXPECT_EQ(group->getValFromRadioGroup(), u"R");
}

TEST_F(RefhostXulTest, BadXulReportsParserMessageAndLine) {
  const struct {
    std::string_view xml;
    std::string message;
    int line;
  } cases[] = {
      {"<window>\n  <vbox>\n</window>", "Start-end tags mismatch", 3},
      {"", "No document element found", 1},
      {"<window>\n\n  <vbox id=\"a/>\n</window>", "Error parsing element attribute", 3},
  };
  for (const auto& c : cases) {
    try {
      sheet_.loadDocument(c.xml, "bad.xul");
      ADD_FAILURE() << "loaded: " << c.xml;
    } catch (const refhost::LoadError& error) {
      EXPECT_EQ(error.message(), c.message);
      EXPECT_EQ(error.line(), c.line) << c.xml;
      EXPECT_EQ(std::string(error.what()), "bad.xul:" + std::to_string(c.line) + ": " + c.message);
    }
  }
  EXPECT_TRUE(sheet_.documents().empty());
}

TEST_F(RefhostXulTest, DocumentsShareTheSheetAndKnowTheirOwner) {
  SmartPtr<Document> page = Load();
  SmartPtr<Document> dialog = sheet_.loadDocument("<dialog id='dlg'/>", "bypass.xul");
  sheet_.setDirectories(u"/drv", u"/home/ann", u"/all");
  EXPECT_EQ(dialog->getOwnerDoc(), nullptr);
  EXPECT_TRUE(sheet_.setOwner(*dialog, page.get()));
  EXPECT_EQ(dialog->getOwnerDoc(), page);
  EXPECT_FALSE(sheet_.setOwner(*page, dialog.get())) << "a cycle of owners";
  EXPECT_EQ(page->getOwnerDoc(), nullptr);
  EXPECT_EQ(dialog->getXWindow(), page->getXWindow());
  EXPECT_EQ(dialog->getUserData().get(), &sheet_.properties());
  EXPECT_EQ(dialog->getFileName(), u"bypass.xul");
  EXPECT_EQ(dialog->getUserDir(), u"/home/ann");
  EXPECT_EQ(dialog->getArchive(), nullptr);
  EXPECT_EQ(Loom::XUL::getXULRootHWND(page.get()), Loom::XUL::getXULRootHWND(dialog.get()));
  EXPECT_NE(Loom::XUL::getXULRootHWND(page.get()), nullptr);
  EXPECT_EQ(Loom::XUL::getXULRootHWND(nullptr), nullptr);
  EXPECT_EQ(page->getLocaleID(u"ja"), u"日本語");
  EXPECT_EQ(page->getLocaleID(u"xx"), u"xx");
}

TEST_F(RefhostXulTest, StringTableResolvesKnownReferencesOnly) {
  refhost::Window& window = sheet_.window();
  window.setString(u"$IDS_A;", u"Alpha");
  window.setString(u"$IDS_B;", u"$IDS_A;");
  const std::pair<std::u16string, std::u16string> cases[] = {
      {u"$IDS_A;", u"Alpha"},   {u"x $IDS_A;$IDS_A; y", u"x AlphaAlpha y"},
      {u"$IDS_B;", u"$IDS_A;"}, {u"$IDS_C; $IDS_A;", u"$IDS_C; Alpha"},
      {u"$$IDS_A;", u"$Alpha"}, {u"$IDS_A", u"$IDS_A"},
  };
  for (const auto& [text, resolved] : cases) {
    EXPECT_EQ(std::u16string_view(window.resolveString(wstring(text))), resolved)
        << refhost::Utf8(text);
  }
}

TEST_F(RefhostXulTest, MenuListFromSettingsBranchReplacesItemsAndKeepsSelection) {
  sheet_.window().setString(u"$IDS_TEMPORARY_PROFILE;", u"Temporary");
  Loom::Services::PersistentItem& profiles = sheet_.window().getSettings()["profiles"];
  profiles["Office"]["label"] = "Office";
  profiles["Temporary Profile"]["label"] = "$IDS_TEMPORARY_PROFILE;";
  profiles["NoLabel"];
  SmartPtr<Document> doc = Load(R"(<window><menulist id="cmb" value="Office"/></window>)");
  Element* list = Find(*doc, u"cmb");
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(doc->genMenuListFromPersistentItem(list, profiles));
    ASSERT_EQ(list->childCount(), 1u);
    const std::vector<Element*> items = list->menuItems();
    ASSERT_EQ(items.size(), 3u);
    EXPECT_EQ(Attr(items[0], u"value"), u"Office");
    EXPECT_EQ(Attr(items[1], u"value"), u"Temporary Profile");
    EXPECT_EQ(Attr(items[1], u"label"), u"Temporary");
    EXPECT_EQ(Attr(items[2], u"label"), u"NoLabel");
    EXPECT_EQ(list->getValfromMenulist(), u"Office");
  }
  EXPECT_EQ(profiles["NoLabel"].find("label"), nullptr) << "reading labels creates nothing";
  EXPECT_FALSE(doc->genMenuListFromPersistentItem(&doc->root(), profiles));
}

// Sees every node the serialiser hands it and blanks the "value" of edt_Name, as the
// library's profile validator does with private fields.
class RecordingValidator : public Loom::Services::BasicDocValidator {
 public:
  void validateTree(Loom::Dom::Node* node) override {
    seen.push_back(refhost::Utf8(node->getName()));
    if (node->attributes()[u"id"] == u"edt_Name") node->attributes().remove(u"value");
    BasicDocValidator::validateTree(node);
  }
  std::vector<std::string> seen;
};

TEST_F(RefhostXulTest, SerialiserStoresValidatedCopyAndPutsControlValuesBack) {
  SmartPtr<Document> doc = Load();
  SmartPtr<RecordingValidator> validator(new RecordingValidator());
  SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
  {
    Loom::Services::XULDocSerialiser serialiser(store, validator);
    ASSERT_TRUE(serialiser.writeSettings(doc.get(), "basic"));
    EXPECT_EQ(validator->seen.size(), 18u) << "XUL_DOC and all 17 elements";
    EXPECT_EQ(validator->seen[0], "XUL_DOC");
    EXPECT_EQ(validator->seen[1], "window");

    Find(*doc, u"edt_Name")->setAttributeValue(u"value", u"Bob");
    Find(*doc, u"edt_Width")->setAttributeValue(u"value", u"297");
    Find(*doc, u"chk_Duplex")->eraseAttribute(u"checked");
    Find(*doc, u"cmb_Bin")->selMenulistWithVal(u"C");
    Find(*doc, u"rdg_Side")->setRadioGroupWithVal(u"R");
    ASSERT_TRUE(serialiser.loadTabSettings(doc.get(), "basic", "tab_Paper"));
    EXPECT_EQ(Attr(Find(*doc, u"edt_Width"), u"value"), u"210");
    EXPECT_EQ(Attr(Find(*doc, u"chk_Duplex"), u"checked"), u"<absent>") << "outside the tab";
    EXPECT_FALSE(serialiser.loadTabSettings(doc.get(), "basic", "no_such_tab"));
    EXPECT_FALSE(serialiser.loadSettings(doc.get(), "other"));
    ASSERT_TRUE(serialiser.save());
  }
  Loom::Services::XULDocSerialiser reloaded(store, nullptr);
  ASSERT_TRUE(reloaded.load());
  ASSERT_NE(reloaded.getDoc("basic"), nullptr);
  EXPECT_EQ(reloaded.getDoc("basic")->attributes()[u"id"], u"basic");
  ASSERT_TRUE(reloaded.loadSettings(doc.get(), "basic"));
  EXPECT_EQ(Attr(Find(*doc, u"edt_Name"), u"value"), u"Bob") << "a blanked value stays";
  EXPECT_EQ(Attr(Find(*doc, u"chk_Duplex"), u"checked"), u"true");
  EXPECT_EQ(Find(*doc, u"cmb_Bin")->getValfromMenulist(), u"B");
  EXPECT_EQ(Attr(Find(*doc, u"cmb_Bin"), u"selectedIndex"), u"1");
  EXPECT_EQ(Find(*doc, u"rdg_Side")->getValFromRadioGroup(), u"L");
  EXPECT_TRUE(reloaded.removeDoc("basic"));
  EXPECT_FALSE(reloaded.removeDoc("basic"));

  Loom::Services::XULDocSerialiser memoryOnly(nullptr, validator);
  EXPECT_FALSE(memoryOnly.load());
  EXPECT_FALSE(memoryOnly.save());
}

TEST_F(RefhostXulTest, ReinitialiseDefaultsRestoresLoadedAttributesOnly) {
  SmartPtr<Document> doc = Load();
  const std::string loaded = doc->toXml();
  Element* name = Find(*doc, u"edt_Name");
  name->setAttributeValue(u"value", u"Bob");
  name->setAttributeValue(u"disabled", u"true");
  name->eraseAttribute(u"onchange");
  Find(*doc, u"cmb_Bin")->selMenulistWithVal(u"A");
  SmartPtr<xXULElem> added = doc->createElement(Loom::kElemTextbox);
  added->setAttribute(u"value", u"new");
  doc->root().appendChild(added.get());
  doc->reinitialiseDefaults();
  EXPECT_EQ(Attr(name, u"value"), u"Ann");
  EXPECT_EQ(Find(*doc, u"cmb_Bin")->getValfromMenulist(), u"B");
  EXPECT_EQ(added->getAttribute(u"value"), u"new") << "created after loading: no defaults";
  doc->root().removeChild(added.get());
  EXPECT_EQ(doc->toXml(), loaded);
}

class ChangeLog : public refhost::ChangeObserver {
 public:
  void onChange(const refhost::Change& change) override {
    std::u16string line;
    switch (change.kind) {
      case refhost::Change::Kind::kAttributeAdded:
        line = u"+";
        break;
      case refhost::Change::Kind::kAttributeChanged:
        line = u"~";
        break;
      case refhost::Change::Kind::kAttributeRemoved:
        line = u"-";
        break;
      case refhost::Change::Kind::kElementAdded:
        line = u"add ";
        break;
      case refhost::Change::Kind::kElementRemoved:
        line = u"remove ";
        break;
    }
    line += change.element->tagName();
    if (change.parent != nullptr) line += u" @" + change.parent->tagName();
    if (!change.attribute.empty()) {
      line += u" " + std::u16string(change.attribute) + u" " + std::u16string(change.oldValue) +
              u">" + std::u16string(change.newValue);
    }
    lines.push_back(refhost::Utf8(line));
  }
  std::vector<std::string> lines;
};

TEST_F(RefhostXulTest, ObserverHearsEveryChangeInTheTreeAndToArgs) {
  ChangeLog log;
  sheet_.setChangeObserver(&log);
  SmartPtr<Document> doc = Load();
  Element* list = Find(*doc, u"cmb_Bin");
  list->selMenulistWithVal(u"C");
  list->selMenulistWithVal(u"C");
  SmartPtr<xXULElem> item = doc->createElement(Loom::kElemMenuItem);
  item->setAttribute(u"value", u"D");
  list->itemList()->appendChild(item.get());
  list->itemList()->removeChild(item.get());
  item->setAttribute(u"value", u"E");
  doc->argsElement().setAttributeValue(u"out_param", u"-2");
  Find(*doc, u"edt_Name")->setAttr(Loom::kAttrValue, u"Ann");
  const std::vector<std::string> expected = {
      "-menuitem selected true>",    "+menuitem selected >true", "~menulist value B>C",
      "~menulist selectedIndex 1>2", "add menuitem @menupopup",  "remove menuitem @menupopup",
      "+args out_param >-2",
  };
  EXPECT_EQ(log.lines, expected);
  sheet_.setChangeObserver(nullptr);
}

}  // namespace
