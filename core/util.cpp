#include "core/util.h"

#include "core/elements.h"
#include "core/file_browser.h"
#include "core/printer_facts.h"
#include "core/text.h"
#include "core/user_modes.h"
#include "host/driver_sdk.h"
#include "host/printer.h"
#include "host/properties.h"
#include "host/script.h"
#include "settings/profile_validator.h"

using Loom::kArgDocument;
using Loom::kArgElement;
using Loom::kArgString;
using spindle::CallArgs;
using spindle::Count;
using spindle::DocPtr;
using spindle::ElemPtr;

const spindle::Method<xUtil> xUtil::kMethods[] = {
    {{"getItemCount", Count::kExactly, 2, {kArgDocument, kArgElement}}, &xUtil::GetItemCount},
    {{"getSelectedItemAttribute", Count::kExactly, 3, {kArgDocument, kArgElement, kArgString}},
     &xUtil::GetSelectedItemAttribute},
    {{"openFileBrowser", Count::kExactly, 4, {kArgDocument, kArgString, kArgString, kArgElement}},
     &xUtil::OpenFileBrowser},
    {{"getProductType", Count::kExactly, 1, {kArgDocument}}, &xUtil::GetProductType},
    {{"getPDLOutputType", Count::kExactly, 1, {kArgDocument}}, &xUtil::GetPDLOutputType},
    {{"getPrintPaperSize", Count::kExactly, 1, {kArgDocument}}, &xUtil::GetPrintPaperSize},
    {{"getPaperType", Count::kExactly, 1, {kArgDocument}}, &xUtil::GetPaperType},
    {{"setMenuListByValue", Count::kExactly, 3, {kArgDocument, kArgElement, kArgString}},
     &xUtil::SetMenuListByValue},
    {{"getTechnology", Count::kExactly, 2, {kArgDocument, kArgString}}, &xUtil::GetTechnology},
    {{"getFinisherType", Count::kExactly, 1, {kArgDocument}}, &xUtil::GetFinisherType},
    {{"saveGUIState", Count::kExactly, 1, {kArgDocument}}, &xUtil::SaveGUIState},
    {{"restoreGUIState", Count::kExactly, 1, {kArgDocument}}, &xUtil::RestoreGUIState},
    {{"clearGUIState", Count::kExactly, 1, {kArgDocument}}, &xUtil::ClearGUIState},
    {{"isUSShipment", Count::kExactly, 1, {kArgElement}}, &xUtil::IsUSShipment},
    {{"isJapShipment", Count::kExactly, 1, {kArgElement}}, &xUtil::IsJapShipment},
    {{"getPortType", Count::kExactly, 1, {kArgDocument}}, &xUtil::GetPortType},
    {{"encrypt", Count::kExactly, 3, {kArgDocument, kArgString, kArgElement}}, &xUtil::Encrypt},
    {{"decrypt", Count::kExactly, 3, {kArgDocument, kArgString, kArgElement}}, &xUtil::Decrypt},
    {{"isControlPanel", Count::kExactly, 1, {kArgDocument}}, &xUtil::IsControlPanel},
    {{"setFirstVisibleMenuItem", Count::kExactly, 2, {kArgDocument, kArgElement}},
     &xUtil::SetFirstVisibleMenuItem},
};

// The store lives in memory only (no backing store) and cleans what it keeps as every
// stored dialog is cleaned: the nick name never stays in it.
xUtil::xUtil()
    : guiState_(nullptr,
                Loom::SmartPtr<Loom::Services::DocValidator>(new ProfileValidator(false))) {}

bool xUtil::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xUtil>(*this, kMethods, false, method, argc, args);
}

namespace {

constexpr char16_t kOutParam[] = u"out_param";

// The document whose device facts a page reads: its owner's, for a dialog or sub-page.
DocPtr FactsDocument(const DocPtr& doc) {
  DocPtr owner = doc->getOwnerDoc();
  return owner ? owner : doc;
}

Loom::wstring DeviceText(const DocPtr& doc, std::string_view branch, std::string_view key) {
  return spindle::Widen(spindle::DeviceSetting(doc, branch, key).value_or(Loom::string()));
}

bool IsMenuList(const ElemPtr& elem) { return elem->getType() == Loom::kElemMenuList; }

// The key of the page's GUI state: its file name.
Loom::string PageKey(const DocPtr& doc) { return spindle::Narrow(doc->getFileName()); }

}  // namespace

bool xUtil::GetItemCount(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& list = args.elem(1);
  if (!doc || !list || !IsMenuList(list)) return false;
  const Loom::XUL::ElemList items = spindle::ChildrenOfType(list, Loom::kElemMenuItem);
  if (items.empty()) return false;
  spindle::SetVar(doc, kOutParam, spindle::DecimalText(static_cast<std::int64_t>(items.size())));
  return true;
}

bool xUtil::GetSelectedItemAttribute(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& list = args.elem(1);
  if (!doc || !list) return false;
  const Loom::wstring name = spindle::Widen(args.str(2));
  if (!IsMenuList(list)) return true;
  for (const ElemPtr& item : spindle::ChildrenOfType(list, Loom::kElemMenuItem)) {
    if (spindle::IsTrue(item->getAttr(Loom::kAttrSelected))) {
      spindle::SetVar(doc, kOutParam, item->getAttribute(name));
      break;
    }
  }
  return true;
}

bool xUtil::OpenFileBrowser(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& target = args.elem(3);
  if (!doc || !target) return false;
  // A mode other than "open" and "save" is a script error: no dialog, and false.
  const std::optional<spindle::BrowseMode> mode = spindle::BrowseModeOf(args.str(1));
  if (!mode) return false;
  if (const std::optional<Loom::wstring> path = spindle::BrowseForFile(doc, *mode, args.str(2))) {
    spindle::SetValue(target, *path);
  }
  return true;
}

bool xUtil::GetProductType(CallArgs& args) {
  if (!args.doc(0)) return false;
  const DocPtr doc = FactsDocument(args.doc(0));
  const Loom::string model =
      spindle::DeviceSetting(doc, "PRODUCTCODE", "ModelName").value_or(Loom::string());
  spindle::SetVar(doc, u"prodType", spindle::ProductTypeOf(model));
  return true;
}

bool xUtil::GetPDLOutputType(CallArgs& args) {
  if (!args.doc(0)) return false;
  const DocPtr doc = FactsDocument(args.doc(0));
  const Loom::string pdl =
      spindle::DeviceSetting(doc, "customisation", "OutputPDL").value_or(Loom::string());
  if (const std::optional<std::u16string_view> type = spindle::PdlTypeOf(pdl)) {
    spindle::SetVar(doc, u"pdlType", *type);
  }
  return true;
}

bool xUtil::GetPrintPaperSize(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr sameAs = spindle::FindById(doc, u"PPS_SameAs");
  if (!sameAs) return false;
  // Printing on the output paper size, or on a print paper size of its own.
  const bool sameAsOutput = spindle::IsTrue(sameAs->getAttr(Loom::kAttrSelected));
  const ElemPtr sizes =
      spindle::FindById(doc, sameAsOutput ? u"oppsz" : u"ePTKWPagePrintMediaSize");
  if (!sizes) return false;
  spindle::SetVar(doc, u"pps", sizes->getValfromMenulist());
  return true;
}

bool xUtil::GetPaperType(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return false;
  if (const ElemPtr media = spindle::FindById(doc, u"ePTKWPageMediaType")) {
    spindle::SetVar(doc, u"paperType", media->getValfromMenulist());
  }
  return true;
}

bool xUtil::SetMenuListByValue(CallArgs& args) {
  const ElemPtr& list = args.elem(1);
  if (!args.doc(0) || !list) return false;
  if (!IsMenuList(list)) return true;
  const Loom::wstring value = spindle::Widen(args.str(2));
  // Only the first item with the value: a menu list has one selection.
  for (const ElemPtr& item : spindle::ChildrenOfType(list, Loom::kElemMenuItem)) {
    if (spindle::ValueOf(item) == value) {
      item->setAttr(Loom::kAttrSelected, Loom::wstring(spindle::kTrue));
      break;
    }
  }
  return true;
}

bool xUtil::GetTechnology(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return false;
  const Loom::wstring name = spindle::Widen(args.str(1));
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  const Loom::wstring folder =
      properties ? properties->getString("loom.commonsettings.folder") : Loom::wstring();
  spindle::SetVar(doc, name, spindle::TechnologyOf(folder));
  return true;
}

bool xUtil::GetFinisherType(CallArgs& args) {
  if (!args.doc(0)) return false;
  const DocPtr doc = FactsDocument(args.doc(0));
  spindle::SetVar(doc, u"finisher", spindle::FinisherTypeOf(DeviceText(doc, "Finisher", "Option")));
  return true;
}

bool xUtil::SaveGUIState(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return false;
  guiState_.writeSettings(doc.get(), PageKey(doc));
  return true;
}

bool xUtil::RestoreGUIState(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return false;
  guiState_.loadSettings(doc.get(), PageKey(doc));  // nothing saved: the page stays as it is
  return true;
}

bool xUtil::ClearGUIState(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return false;
  guiState_.removeDoc(PageKey(doc));
  return true;
}

bool xUtil::IsUSShipment(CallArgs& args) {
  const ElemPtr& elem = args.elem(0);
  if (!elem) return false;
  elem->setAttribute(u"usshipment",
                     Loom::wstring(spindle::BoolText(Loom::isNorthAmericanShipment())));
  return true;
}

bool xUtil::IsJapShipment(CallArgs& args) {
  const ElemPtr& elem = args.elem(0);
  if (!elem) return false;
  elem->setAttribute(u"japshipment", Loom::wstring(spindle::BoolText(Loom::isJapaneseShipment())));
  return true;
}

bool xUtil::GetPortType(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return false;
  spindle::SetVar(doc, u"PortType", IsNetworkPortDriver(doc.get(), false) ? u"Network" : u"Other");
  return true;
}

bool xUtil::Encrypt(CallArgs& args) {
  const ElemPtr& target = args.elem(2);
  if (!args.doc(0) || !target) return false;
  spindle::SetValue(target, spindle::Widen(Loom::Encrypt(Loom::string(args.str(1)))));
  return true;
}

bool xUtil::Decrypt(CallArgs& args) {
  const ElemPtr& target = args.elem(2);
  if (!args.doc(0) || !target) return false;
  spindle::SetValue(target, spindle::Widen(Loom::Decrypt(Loom::string(args.str(1)))));
  return true;
}

bool xUtil::IsControlPanel(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return false;
  spindle::SetVar(doc, u"cp", spindle::BoolText(spindle::IsControlPanel(doc)));
  return true;
}

bool xUtil::SetFirstVisibleMenuItem(CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& list = args.elem(1);
  if (!doc || !list) return false;
  if (const ElemPtr itemList = list->getChildAt(0)) {
    const Loom::XUL::ElemList items = spindle::ChildrenOfType(itemList, Loom::kElemMenuItem);
    for (std::size_t index = 0; index < items.size(); ++index) {
      if (spindle::IsTrue(items[index]->getAttr(Loom::kAttrHidden))) continue;
      // The list's selected position follows the chosen item, as when the user picks it.
      list->setAttr(Loom::kAttrSelectedIndex,
                    spindle::DecimalText(static_cast<std::int64_t>(index)));
      items[index]->setAttr(Loom::kAttrSelected, Loom::wstring(spindle::kTrue));
      break;
    }
  }
  const Loom::wstring command = list->getAttr(Loom::kAttrCommand);
  if (command.empty()) return true;
  if (const Loom::SmartPtr<Loom::JS::Environment> script = doc->getScriptEnv()) {
    script->doString(spindle::Narrow(command), "updatePrintJobList", list.get());
  }
  return true;
}
