// Documents and their elements: loading pages, owners, the user's edits, and the
// expectations on elements.
#include <filesystem>
#include <optional>

#include "host/codes.h"
#include "refhost/document.h"
#include "tools/loomsim/element_ref.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/source_text.h"
#include "tools/loomsim/text_values.h"
#include "tools/loomsim/value_check.h"

namespace loomsim {
namespace {

constexpr std::u16string_view kSelected = u"selected";
constexpr std::u16string_view kValue = u"value";
constexpr std::u16string_view kTrue = u"true";

// The documents' file names are the scenario names with this extension ("basic.xul").
constexpr std::string_view kPageExtension = ".xul";

refhost::Element& Resolve(Scenario& scenario, const ElementRef& ref) {
  std::string missing;
  refhost::Element* element = ResolveElement(scenario, ref, missing);
  if (element == nullptr) throw SetupError{missing};
  return *element;
}

std::u16string Wide(const std::string& text) {
  std::optional<std::u16string> wide = WideText(text);
  if (!wide)
    throw SetupError{"the text " + Quote(text) + " is not UTF-8: no attribute can hold it"};
  return *wide;
}

void Load(Scenario& scenario, const std::string& name, std::string_view xml, int firstLine) {
  try {
    Loom::SmartPtr<refhost::Document> document =
        scenario.sheet().loadDocument(std::string(xml), name + std::string(kPageExtension));
    scenario.AddDocument(name, *document);
  } catch (const refhost::LoadError& error) {
    throw SetupError{"bad XUL at line " + std::to_string(firstLine + error.line() - 1) + ": " +
                     error.message()};
  }
}

void LoadFile(Scenario& scenario, const std::string& name, const std::string& path) {
  const std::filesystem::path file = scenario.directory() / path;
  std::string xml = ReadSourceFile(file);
  try {
    Loom::SmartPtr<refhost::Document> document =
        scenario.sheet().loadDocument(std::move(xml), file.filename().string());
    scenario.AddDocument(name, *document);
  } catch (const refhost::LoadError& error) {
    throw SetupError{"bad XUL in " + file.string() + " at line " + std::to_string(error.line()) +
                     ": " + error.message()};
  }
}

Parsed ParseDoc(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const std::string name = cursor.Name("a document name");
  if (cursor.Accept("file")) {
    const std::string path = cursor.Text("a quoted path to a XUL file");
    return {"doc " + name + " file " + Quote(path),
            [name, path](Scenario& scenario) { LoadFile(scenario, name, path); }};
  }
  if (!input.hasBlock()) cursor.Fail("file \"path.xul\" or a <<END block");
  const Block& block = input.TakeBlock();
  return {"doc " + name + " <<" + block.marker,
          [name, xml = block.text, line = block.firstLine](Scenario& scenario) {
            Load(scenario, name, xml, line);
          }};
}

refhost::Document& NamedDocument(Scenario& scenario, const std::string& name) {
  refhost::Document* document = scenario.FindDocument(name);
  if (document == nullptr) throw SetupError{"no document " + name};
  return *document;
}

Parsed ParseOwner(StatementInput& input) {
  const std::string child = input.cursor().Name("the name of the opened document");
  const std::string parent = input.cursor().Name("the name of the document that opened it");
  return {"owner " + child + " " + parent, [child, parent](Scenario& scenario) {
            if (!scenario.sheet().setOwner(NamedDocument(scenario, child),
                                           &NamedDocument(scenario, parent))) {
              throw SetupError{"a document cannot own itself, directly or through others"};
            }
          }};
}

// The menu list or radio group an item belongs to, or null.
refhost::Element* ListOf(refhost::Element& item) {
  for (refhost::Element* at = item.parent(); at != nullptr; at = at->parent()) {
    const int type = at->getType();
    if (type == Loom::kElemMenuList || type == Loom::kElemRadioGroup) return at;
  }
  return nullptr;
}

// What the user's editing does: picking an item or a value selects it as the host's own
// helpers do; anything else is the attribute itself.
void Edit(refhost::Element& element, const std::u16string& attribute, const std::u16string& value) {
  const int type = element.getType();
  const bool isList = type == Loom::kElemMenuList || type == Loom::kElemRadioGroup;
  if (attribute == kValue && isList) {
    const Loom::wstring wide(value);
    const bool selected = type == Loom::kElemMenuList ? element.selMenulistWithVal(wide)
                                                      : element.setRadioGroupWithVal(wide);
    if (!selected) throw SetupError{"the list has no item with the value " + Quote(value)};
    return;
  }
  refhost::Element* list = ListOf(element);
  if (attribute == kSelected && value == kTrue && list != nullptr) {
    const std::vector<refhost::Element*> items =
        list->getType() == Loom::kElemMenuList ? list->menuItems() : list->radios();
    for (std::size_t i = 0; i < items.size(); ++i) {
      if (items[i] != &element) continue;
      if (list->getType() == Loom::kElemMenuList) {
        list->setSelectedIndex(static_cast<int>(i));
      } else {
        list->setRadioGroupWithVal(Loom::wstring(element.getAttribute(Loom::wstring(kValue))));
      }
      return;
    }
  }
  element.setAttributeValue(attribute, value);
}

Parsed ParseSet(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const ElementRef ref = ParseElementRef(cursor);
  cursor.Expect(".", "'.' and an attribute name");
  const std::string attribute = cursor.Name("an attribute name", ":");
  cursor.Expect("=", "'=' and a quoted text");
  const std::string value = cursor.Text("a quoted text");
  return {"set " + ElementRefText(ref) + "." + attribute + " = " + Quote(value),
          [ref, attribute, value](Scenario& scenario) {
            Edit(Resolve(scenario, ref), Wide(attribute), Wide(value));
          }};
}

// After the element: .ATTR == "text" | .ATTR absent | .ATTR present.
Parsed AttributeExpectation(Cursor& cursor, const ElementRef& ref) {
  cursor.Expect(".", "'.' and an attribute name");
  const std::string attribute = cursor.Name("an attribute name", ":");
  const ValueExpectation expectation = ParseValueExpectation(cursor);
  return {
      "expect " + ElementRefText(ref) + "." + attribute + " " + ValueExpectationText(expectation),
      [ref, attribute, expectation](Scenario& scenario) {
        std::string missing;
        const refhost::Element* element = ResolveElement(scenario, ref, missing);
        if (element == nullptr) {
          scenario.Check(false, missing);
          return;
        }
        const std::u16string* value = element->findAttribute(*WideText(attribute));
        CheckValue(scenario, expectation, value ? std::optional(NarrowText(*value)) : std::nullopt);
      }};
}

// The selected value of a menu list or radio group; nothing for another element.
std::optional<std::string> SelectedValue(const refhost::Element& element) {
  switch (element.getType()) {
    case Loom::kElemMenuList:
      return NarrowText(element.getValfromMenulist());
    case Loom::kElemRadioGroup:
      return NarrowText(element.getValFromRadioGroup());
    default:
      return std::nullopt;
  }
}

std::size_t ItemCount(const refhost::Element& element) {
  return element.getType() == Loom::kElemRadioGroup ? element.radios().size()
                                                    : element.menuItems().size();
}

Parsed ParseElementExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const ElementRef ref = ParseElementRef(cursor);
  const std::string echo = "expect " + ElementRefText(ref);
  if (cursor.Rest().starts_with('.')) return AttributeExpectation(cursor, ref);
  if (cursor.Accept("selected")) {
    cursor.Expect("==", "== \"value\" after selected");
    const std::string value = cursor.Text("the quoted value of the selected item");
    return {echo + " selected == " + Quote(value), [ref, value](Scenario& scenario) {
              std::string missing;
              const refhost::Element* element = ResolveElement(scenario, ref, missing);
              if (element == nullptr) return scenario.Check(false, missing);
              const std::optional<std::string> selected = SelectedValue(*element);
              scenario.Check(selected == value,
                             selected ? Quote(*selected) : "not a menu list or radio group");
            }};
  }
  if (cursor.Accept("items")) {
    cursor.Expect("==", "== N after items");
    const std::int64_t count = cursor.Integer("a number of items");
    return {echo + " items == " + std::to_string(count), [ref, count](Scenario& scenario) {
              std::string missing;
              const refhost::Element* element = ResolveElement(scenario, ref, missing);
              if (element == nullptr) return scenario.Check(false, missing);
              const std::size_t items = ItemCount(*element);
              scenario.Check(static_cast<std::int64_t>(items) == count, std::to_string(items));
            }};
  }
  const bool present = cursor.Accept("present");
  if (!present && !cursor.Accept("absent")) {
    cursor.Fail(".ATTR, selected, items, absent or present after the element");
  }
  return {echo + (present ? " present" : " absent"), [ref, present](Scenario& scenario) {
            std::string missing;
            const bool found = ResolveElement(scenario, ref, missing) != nullptr;
            // Without the document the scenario itself is wrong: that never passes.
            if (DocumentOf(scenario, ref) == nullptr) return scenario.Check(false, missing);
            scenario.Check(found == present, found ? "present" : "absent");
          }};
}

Parsed ParseVarsExpectation(StatementInput& input) {
  return AttributeExpectation(input.cursor(), {ElementRef::Kind::kVars, {}, {}});
}

Parsed ParseArgsExpectation(StatementInput& input) {
  return AttributeExpectation(input.cursor(), {ElementRef::Kind::kArgs, {}, {}});
}

constexpr StatementForm kForms[] = {
    {"doc", "doc NAME <<END\ndoc NAME file \"path.xul\"", ParseDoc},
    {"owner", "owner CHILD PARENT", ParseOwner},
    {"set", "set #id.ATTR = \"text\"\nset NAME#id.ATTR = \"text\"", ParseSet},
    {"expect #",
     "expect #id.ATTR == \"text\"|absent|present\n"
     "expect #id absent|present\n"
     "expect #id selected == \"value\"\n"
     "expect #id items == N            (each also with NAME#id)",
     ParseElementExpectation},
    {"expect vars", "expect vars.ATTR == \"text\"|absent|present", ParseVarsExpectation},
    {"expect args", "expect args.ATTR == \"text\"|absent|present", ParseArgsExpectation},
};

}  // namespace

extern const Facility kDocumentFacility{"documents", kForms, nullptr};

}  // namespace loomsim
