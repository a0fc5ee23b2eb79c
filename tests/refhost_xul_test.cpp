// The reference host's live XUL side: codes, id index, element lifetime, list helpers,
// loading errors, owners, the serialiser and defaults.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "refhost/accounting.h"
#include "refhost/backing_store.h"
#include "refhost/text.h"
#include "refhost/xul_codes.h"
#include "support/sheet_test.h"

namespace {

using Loom::SmartPtr;
using Loom::wstring;
using Loom::XUL::xXULElem;
using refhost::Document;
using refhost::Element;

constexpr char kPage[] = R"(<window id="basic"><vbox id="vars"/>
  <textbox id="edt_Name" value="Ann" onchange="x();"/><checkbox id="chk_Duplex" checked="true"/>
  <menulist id="cmb_Bin" value="B" selectedIndex="1"><menupopup><menuitem value="A" label="Auto"/>
    <menuitem value="B" label="Drawer" selected="true"/><menuitem value="C" label="Tray"/>
  </menupopup></menulist>
  <radiogroup id="rdg_Side" value="L"><hbox><radio value="L" selected="true"/><radio value="R"/>
    </hbox><radiogroup id="rdg_Inner"><radio value="X"/></radiogroup></radiogroup>
  <tabbox id="tab_Paper"><textbox id="edt_Width" value="210"/></tabbox></window>)";

// The page is kPage; the fixture checks that no reference is left held.
class RefhostXulTest : public testing_support::SheetTest {
 protected:
  RefhostXulTest() : SheetTest(kPage) {}

  Element* Find(std::u16string_view id) { return page_->elementById(id); }
  static std::u16string Attr(const Element* element, std::u16string_view name) {
    const std::u16string* value = element->findAttribute(name);
    return value != nullptr ? *value : u"<absent>";
  }
};

TEST_F(RefhostXulTest, EveryRowOfTheCodeTablesHoldsBothWays) {
  Element* box = Find(u"vars");
  for (const refhost::AttributeNameRow& row : refhost::AttributeNameTable()) {
    box->setAttr(row.code, u"by code");
    EXPECT_EQ(box->getAttribute(wstring(row.name)), u"by code") << refhost::Utf8(row.name);
    box->setAttribute(wstring(row.name), u"by name");
    EXPECT_EQ(box->getAttr(row.code), u"by name") << refhost::Utf8(row.name);
  }
  box->setAttr(9999, u"lost");
  EXPECT_EQ(box->getAttr(9999), u"");
  EXPECT_EQ(box->attributes().size(), refhost::AttributeNameTable().size());

  for (const refhost::ElementTagRow& row : refhost::ElementTagTable()) {
    EXPECT_EQ(refhost::ElementTypeOfTag(row.tag), row.type) << refhost::Utf8(row.tag);
    // A created element takes the first tag of its type.
    SmartPtr<xXULElem> created = page_->createElement(row.type);
    ASSERT_NE(created, nullptr);
    EXPECT_EQ(created->getType(), row.type);
    EXPECT_EQ(static_cast<Element*>(created.get())->tagName(), refhost::TagOfElementType(row.type));
  }
  EXPECT_EQ(page_->createElement(Loom::kElemUnknown), nullptr);
  SmartPtr<Document> odd = sheet_.loadDocument("<window><html:div id='d'/></window>", "odd.xul");
  EXPECT_EQ(odd->elementById(u"d")->getType(), Loom::kElemUnknown);
  EXPECT_EQ(odd->elementById(u"d")->tagName(), u"html:div");
}

TEST_F(RefhostXulTest, IdIndexFollowsIdChangesAndStructure) {
  SmartPtr<xXULElem> name = page_->getElementById(u"edt_Name");
  name->setAttribute(u"id", u"edt_Renamed");
  EXPECT_EQ(page_->getElementById(u"edt_Name"), nullptr);
  EXPECT_EQ(page_->getElementById(u"edt_Renamed"), name);

  Element& root = page_->root();
  EXPECT_TRUE(root.removeChild(name.get()));
  EXPECT_FALSE(root.removeChild(name.get()));
  EXPECT_EQ(page_->getElementById(u"edt_Renamed"), nullptr);
  name->removeAttribute(u"id");
  name->setAttribute(u"id", u"edt_Back");
  EXPECT_EQ(page_->getElementById(u"edt_Back"), nullptr) << "a detached element is not indexed";
  EXPECT_TRUE(Find(u"tab_Paper")->appendChild(name.get()));
  EXPECT_EQ(page_->getElementById(u"edt_Back"), name);

  SmartPtr<xXULElem> twin = page_->createElement(Loom::kElemTextbox);
  twin->setAttribute(u"id", u"edt_Width");
  EXPECT_TRUE(root.appendChild(twin.get()));
  EXPECT_EQ(page_->getElementById(u"edt_Width")->getAttribute(u"value"), u"210")
      << "the first in document order wins";
  EXPECT_FALSE(name->appendChild(&root)) << "an ancestor cannot be moved below its descendant";
  EXPECT_FALSE(root.appendChild(&page_->argsElement()));
}

TEST_F(RefhostXulTest, FindElementResolvesArgsButGetElementByIdDoesNot) {
  SmartPtr<Document> doc =
      sheet_.loadDocument(R"(<window><vbox id="args"/><vbox id="vars"/></window>)", "a.xul");
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
  const long objects = refhost::liveBaseObjects();
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
      const long live = refhost::liveBaseObjects();
      removed.reset();
      EXPECT_EQ(refhost::liveBaseObjects(), live - 1) << "freed with its last reference";
    }
    // The sheet goes with the document; the held element stays usable on its own.
    sheet.reset();
    EXPECT_EQ(kept->getOwnerDocument(), nullptr);
    EXPECT_EQ(static_cast<Element*>(kept.get())->parent(), nullptr);
    ASSERT_EQ(kept->getNumChildren(), 1);
    kept->setAttribute(u"value", u"after");
    EXPECT_EQ(kept->getChildAt(0)->getAttribute(u"value"), u"210");
  }
  EXPECT_EQ(refhost::liveBaseObjects(), objects) << "everything freed with the last reference";
}

// Children are taken out from the front half by moving the ones before them, from the back
// half by moving the ones after them; either way the rest keep their order.
TEST_F(RefhostXulTest, ChildrenKeepTheirOrderWhereverOneIsTakenOut) {
  SmartPtr<Document> doc = sheet_.loadDocument(
      "<window><box id=\"b\"><label id=\"0\"/><label id=\"1\"/><label id=\"2\"/>"
      "<label id=\"3\"/><label id=\"4\"/><label id=\"5\"/><label id=\"6\"/>"
      "<label id=\"7\"/></box></window>",
      "c.xul");
  Element* box = doc->elementById(u"b");
  auto ids = [box] {
    std::string out;
    for (int i = 0; i < box->getNumChildren(); ++i) {
      out += refhost::Utf8(box->getChildAt(i)->getAttribute(u"id"));
    }
    return out;
  };
  std::vector<SmartPtr<xXULElem>> removed;
  const std::tuple<const char16_t*, const char*> kSteps[] = {
      {u"1", "0234567"}, {u"0", "234567"}, {u"3", "24567"},
      {u"2", "4567"},    {u"6", "457"},    {u"7", "45"},
  };
  for (const auto& [id, left] : kSteps) {
    removed.emplace_back(doc->getElementById(id));
    ASSERT_TRUE(box->removeChild(removed.back().get()));
    EXPECT_EQ(ids(), left) << refhost::Utf8(id);
    EXPECT_EQ(doc->getElementById(id), nullptr);
  }
  for (const SmartPtr<xXULElem>& element : removed) ASSERT_TRUE(box->appendChild(element.get()));
  EXPECT_EQ(ids(), "45103267");
  EXPECT_EQ(doc->getElementById(u"3"), removed[2]);
}

// Selecting by value, or by position N written "#N": the items' selected attributes
// afterwards ('t' true, '-' absent), with the list's value and index those of the 't' item.
TEST_F(RefhostXulTest, MenuListSelectionKeepsFlagsValueAndIndexTogether) {
  const std::tuple<std::u16string, bool, std::u16string> cases[] = {
      {u"C", true, u"--t"},   {u"Z", false, u"-t-"},   {u"#0", true, u"t--"},
      {u"#3", false, u"-t-"}, {u"#-1", false, u"-t-"},
  };
  for (const auto& [select, answer, selectedFlags] : cases) {
    SCOPED_TRACE(refhost::Utf8(select));
    SmartPtr<Document> doc = sheet_.loadDocument(kPage, "basic.xul");
    Element* list = doc->elementById(u"cmb_Bin");
    EXPECT_EQ(select[0] == u'#' ? list->setSelectedIndex(std::stoi(refhost::Utf8(select.substr(1))))
                                : list->selMenulistWithVal(wstring(select)),
              answer);
    std::u16string flags;
    for (Element* item : list->menuItems()) {
      const std::u16string* selected = item->findAttribute(u"selected");
      flags += selected == nullptr ? u'-' : (*selected == u"true" ? u't' : u'?');
    }
    EXPECT_EQ(flags, selectedFlags);
    const int index = static_cast<int>(selectedFlags.find(u't'));
    const std::u16string value(1, u"ABC"[index]);
    EXPECT_EQ(Attr(list, u"value"), value);
    EXPECT_EQ(Attr(list, u"selectedIndex"), std::u16string(1, u'0' + index));
    EXPECT_EQ(std::u16string_view(list->getValfromMenulist()), value);
    EXPECT_EQ(list->getSelectedIndex(), index);
  }
}

TEST_F(RefhostXulTest, MenuListItemsComeFromItsItemList) {
  SmartPtr<Document> doc = sheet_.loadDocument(
      R"(<window><menulist id="l"><menupopup><menuitem value="A"/><menuitem value="A"/>
         <separator/><menuitem value="B"/></menupopup></menulist><menulist id="bare"/></window>)",
      "l.xul");
  Element* list = doc->elementById(u"l");
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
  EXPECT_FALSE(doc->elementById(u"bare")->getChildrenOfType(Loom::kElemMenuItem, items));
  EXPECT_TRUE(items.empty());
}

TEST_F(RefhostXulTest, RadioGroupSelectsAmongItsOwnRadiosInsideBoxes) {
  Element* group = Find(u"rdg_Side");
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
  const std::tuple<std::string_view, std::string, int> cases[] = {
      {"<window>\n  <vbox>\n</window>", "Start-end tags mismatch", 3},
      {"", "No document element found", 1},
  };
  for (const auto& [xml, message, line] : cases) {
    try {
      sheet_.loadDocument(std::string(xml), "bad.xul");
      ADD_FAILURE() << "loaded: " << xml;
    } catch (const refhost::LoadError& error) {
      EXPECT_EQ(error.message(), message);
      EXPECT_EQ(error.line(), line) << xml;
      EXPECT_EQ(std::string(error.what()), "bad.xul:" + std::to_string(line) + ": " + message);
    }
  }
  EXPECT_EQ(sheet_.documents().size(), 1u) << "only the page";
}

TEST_F(RefhostXulTest, DocumentsShareTheSheetAndKnowTheirOwner) {
  SmartPtr<Document> dialog = sheet_.loadDocument("<dialog id='dlg'/>", "bypass.xul");
  sheet_.setDirectories(u"/drv", u"/home/ann", u"/all");
  EXPECT_EQ(dialog->getOwnerDoc(), nullptr);
  EXPECT_TRUE(sheet_.setOwner(*dialog, page_.get()));
  EXPECT_EQ(dialog->getOwnerDoc(), page_);
  EXPECT_FALSE(sheet_.setOwner(*page_, dialog.get())) << "a cycle of owners";
  EXPECT_EQ(page_->getOwnerDoc(), nullptr);
  EXPECT_EQ(dialog->getXWindow(), page_->getXWindow());
  EXPECT_EQ(dialog->getUserData().get(), &sheet_.properties());
  EXPECT_EQ(dialog->getUserDir(), u"/home/ann");
  EXPECT_EQ(Loom::XUL::getXULRootHWND(page_.get()), Loom::XUL::getXULRootHWND(dialog.get()));
  EXPECT_NE(Loom::XUL::getXULRootHWND(page_.get()), nullptr);
  EXPECT_EQ(Loom::XUL::getXULRootHWND(nullptr), nullptr);
  EXPECT_EQ(page_->getLocaleID(u"ja"), u"日本語");
  EXPECT_EQ(page_->getLocaleID(u"xx"), u"xx");
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
  Loom::Services::PersistentItem& profiles = user()["profiles"];
  profiles["Office"]["label"] = "Office";
  profiles["Temporary Profile"]["label"] = "$IDS_TEMPORARY_PROFILE;";
  profiles["NoLabel"];
  SmartPtr<Document> doc =
      sheet_.loadDocument(R"(<window><menulist id="cmb" value="Office"/></window>)", "p.xul");
  Element* list = doc->elementById(u"cmb");
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
  SmartPtr<RecordingValidator> validator(new RecordingValidator());
  SmartPtr<refhost::MemoryBackingStore> store(new refhost::MemoryBackingStore());
  {
    Loom::Services::XULDocSerialiser serialiser(store, validator);
    ASSERT_TRUE(serialiser.writeSettings(page_.get(), "basic"));
    EXPECT_EQ(validator->seen.size(), 18u) << "XUL_DOC and all 17 elements";
    EXPECT_EQ(validator->seen[0], "XUL_DOC");
    EXPECT_EQ(validator->seen[1], "window");

    Find(u"edt_Name")->setAttributeValue(u"value", u"Bob");
    Find(u"edt_Width")->setAttributeValue(u"value", u"297");
    Find(u"chk_Duplex")->eraseAttribute(u"checked");
    Find(u"cmb_Bin")->selMenulistWithVal(u"C");
    Find(u"rdg_Side")->setRadioGroupWithVal(u"R");
    ASSERT_TRUE(serialiser.loadTabSettings(page_.get(), "basic", "tab_Paper"));
    EXPECT_EQ(Attr(Find(u"edt_Width"), u"value"), u"210");
    EXPECT_EQ(Attr(Find(u"chk_Duplex"), u"checked"), u"<absent>") << "outside the tab";
    EXPECT_FALSE(serialiser.loadTabSettings(page_.get(), "basic", "no_such_tab"));
    EXPECT_FALSE(serialiser.loadSettings(page_.get(), "other"));
    ASSERT_TRUE(serialiser.save());
  }
  Loom::Services::XULDocSerialiser reloaded(store, nullptr);
  ASSERT_TRUE(reloaded.load());
  ASSERT_NE(reloaded.getDoc("basic"), nullptr);
  EXPECT_EQ(reloaded.getDoc("basic")->attributes()[u"id"], u"basic");
  ASSERT_TRUE(reloaded.loadSettings(page_.get(), "basic"));
  EXPECT_EQ(Attr(Find(u"edt_Name"), u"value"), u"Bob") << "a blanked value stays";
  EXPECT_EQ(Attr(Find(u"chk_Duplex"), u"checked"), u"true");
  EXPECT_EQ(Find(u"cmb_Bin")->getValfromMenulist(), u"B");
  EXPECT_EQ(Attr(Find(u"cmb_Bin"), u"selectedIndex"), u"1");
  EXPECT_EQ(Find(u"rdg_Side")->getValFromRadioGroup(), u"L");
  EXPECT_TRUE(reloaded.removeDoc("basic"));
  EXPECT_FALSE(reloaded.removeDoc("basic"));

  Loom::Services::XULDocSerialiser memoryOnly(nullptr, validator);
  EXPECT_FALSE(memoryOnly.load());
  EXPECT_FALSE(memoryOnly.save());
}

TEST_F(RefhostXulTest, ReinitialiseDefaultsRestoresLoadedAttributesOnly) {
  const std::string loaded = page_->toXml();
  // The second round finds the defaults kept although the first put them back.
  for (int round = 0; round < 2; ++round) {
    Element* name = Find(u"edt_Name");
    name->setAttributeValue(u"value", u"Bob");
    name->setAttributeValue(u"disabled", u"true");
    name->eraseAttribute(u"onchange");
    Find(u"cmb_Bin")->selMenulistWithVal(u"A");
    // Changed while out of the tree, then put back in its place.
    SmartPtr<xXULElem> width = page_->getElementById(u"edt_Width");
    Find(u"tab_Paper")->removeChild(width.get());
    width->setAttribute(u"value", u"297");
    Find(u"tab_Paper")->appendChild(width.get());
    SmartPtr<xXULElem> added = page_->createElement(Loom::kElemTextbox);
    added->setAttribute(u"value", u"new");
    page_->root().appendChild(added.get());
    page_->reinitialiseDefaults();
    EXPECT_EQ(added->getAttribute(u"value"), u"new") << "created after loading: no defaults";
    page_->root().removeChild(added.get());
    EXPECT_EQ(page_->toXml(), loaded);
  }
}

// One line per change: its mark, the element's tag, "@parent" for elements added or
// removed, and "attribute old>new" for attribute changes.
class ChangeLog : public refhost::ChangeObserver {
 public:
  void onChange(const refhost::Change& change) override {
    // In the order of Change::Kind.
    static constexpr const char16_t* kMarks[] = {u"+", u"~", u"-", u"add ", u"remove "};
    std::u16string line = kMarks[static_cast<int>(change.kind)] + change.element->tagName();
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
  Element* list = Find(u"cmb_Bin");
  list->selMenulistWithVal(u"C");
  list->selMenulistWithVal(u"C");
  SmartPtr<xXULElem> item = page_->createElement(Loom::kElemMenuItem);
  item->setAttribute(u"value", u"D");
  list->itemList()->appendChild(item.get());
  list->itemList()->removeChild(item.get());
  item->setAttribute(u"value", u"E");
  page_->argsElement().setAttributeValue(u"out_param", u"-2");
  Find(u"edt_Name")->setAttr(Loom::kAttrValue, u"Ann");
  const std::vector<std::string> expected = {
      "-menuitem selected true>",    "+menuitem selected >true", "~menulist value B>C",
      "~menulist selectedIndex 1>2", "add menuitem @menupopup",  "remove menuitem @menupopup",
      "+args out_param >-2",
  };
  EXPECT_EQ(log.lines, expected);
  sheet_.setChangeObserver(nullptr);
}

}  // namespace
