#include "job/customisation.h"

#include <algorithm>
#include <cwctype>
#include <string_view>

#include "core/elements.h"
#include "core/text.h"
#include "host/codes.h"
#include "host/file.h"
#include "host/printer.h"
#include "host/properties.h"
#include "host/settings.h"

using spindle::Count;
using spindle::DocPtr;
using spindle::ElemPtr;

const spindle::Method<xCustomisation> xCustomisation::kMethods[] = {
    {{"loadDlg", Count::kExactly, 1, {Loom::kArgDocument}}, &xCustomisation::LoadDlg},
    {{"okClick", Count::kExactly, 1, {Loom::kArgDocument}}, &xCustomisation::OkClick},
    {{"checkPluginExclusions", Count::kExactly, 2, {Loom::kArgDocument, Loom::kArgElement}},
     &xCustomisation::CheckPluginExclusions},
    {{"checkPlugin", Count::kExactly, 3, {Loom::kArgDocument, Loom::kArgString, Loom::kArgElement}},
     &xCustomisation::CheckPlugin},
    {{"restoreDefaultsPlugins", Count::kExactly, 1, {Loom::kArgDocument}},
     &xCustomisation::RestoreDefaultsPlugins},
};

bool xCustomisation::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xCustomisation>(*this, kMethods, false, method, argc, args);
}

namespace {

constexpr std::u16string_view kLanguageList = u"languages";
constexpr std::u16string_view kPluginBox = u"plugins";
constexpr std::u16string_view kGenericGroup = u"generic";
constexpr std::u16string_view kAutoLanguage = u"Auto";
constexpr std::u16string_view kAutoLabel = u"$IDS_SETTING_AUTO;";
constexpr char kCustomisationBranch[] = "customisation";
constexpr char kLanguageKey[] = "Language";
constexpr std::u16string_view kLocaleFile = u"locale.txt";
constexpr char kDefaultMenuKey[] = "DEFMENUSETTINGS";
constexpr char kBasicMenu[] = "Basic";
constexpr char kImageQualityPlugin[] = "Image Quality";
constexpr std::u16string_view kRegistryKey = u"PrinterDriverData";
constexpr std::u16string_view kFactoryPluginsValue = u"Plugins";

using PluginPtr = Loom::SmartPtr<Loom::Plugin>;

// A plug-in's name as its check box id: every blank (wide-character space test) removed.
Loom::wstring BoxId(std::u16string_view name) {
  Loom::wstring id;
  for (char16_t c : name) {
    if (!std::iswspace(static_cast<wint_t>(c))) id += c;
  }
  return id;
}
Loom::wstring BoxId(const Loom::string& name) { return BoxId(spindle::Widen(name)); }

// The output language: the parent document's property (the dialog's own without one).
Loom::wstring OutputLanguage(const DocPtr& doc) {
  DocPtr source = doc->getOwnerDoc();
  if (!source) source = doc;
  const Loom::SmartPtr<Loom::PropertyManager> properties = source->getUserData();
  return properties ? properties->getString("weaver.output.jobtype") : Loom::wstring();
}

Loom::wstring Property(const DocPtr& doc, const char* key) {
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  return properties ? properties->getString(key) : Loom::wstring();
}

// The check box children of "plugins"; other children are passed over.
Loom::XUL::ElemList PluginBoxes(const DocPtr& doc) {
  const ElemPtr container = spindle::FindById(doc, kPluginBox);
  if (!container) return {};
  return spindle::ChildrenOfType(container, Loom::kElemCheckbox);
}

// Greys out (or releases) the boxes of the plug-ins `plugin` excludes.
void ApplyExclusions(const DocPtr& doc, const Loom::Plugin& plugin, bool ticked) {
  for (const Loom::string& excluded : plugin.exclusions()) {
    if (const ElemPtr box = spindle::FindById(doc, BoxId(excluded))) {
      box->setAttr(Loom::kAttrDisabled, Loom::wstring(spindle::BoolText(ticked)));
    }
  }
}

// The language list's item list, created when the list has none yet.
ElemPtr ItemListOf(const DocPtr& doc, const ElemPtr& list) {
  for (int i = 0; i < list->getNumChildren(); ++i) {
    ElemPtr child = list->getChildAt(i);
    if (child && child->getType() == Loom::kElemMenuPopup) return child;
  }
  ElemPtr popup = doc->createElement(Loom::kElemMenuPopup);
  if (popup) list->appendChild(popup.get());
  return popup;
}

void RemoveChildren(const ElemPtr& parent, const Loom::XUL::ElemList& children) {
  for (const ElemPtr& child : children) parent->removeChild(child.get());
}

void AddItem(const DocPtr& doc, const ElemPtr& popup, std::u16string_view value,
             std::u16string_view label) {
  const ElemPtr item = doc->createElement(Loom::kElemMenuItem);
  if (!item) return;
  item->setAttr(Loom::kAttrLabel, Loom::wstring(label));
  item->setAttr(Loom::kAttrValue, Loom::wstring(value));
  popup->appendChild(item.get());
}

void FillLanguages(const DocPtr& doc, Loom::XUL::xWindow& window) {
  const ElemPtr list = spindle::FindById(doc, kLanguageList);
  if (!list) return;
  const ElemPtr popup = ItemListOf(doc, list);
  if (!popup) return;
  RemoveChildren(popup, spindle::ChildrenOfType(list, Loom::kElemMenuItem));
  AddItem(doc, popup, kAutoLanguage, kAutoLabel);
  // The installed languages follow in the host's order, which is the order the driver
  // ships them in.
  for (const Loom::wstring& code : window.getInstalledLanguages()) {
    AddItem(doc, popup, code, doc->getLocaleID(code));
  }
  Loom::Services::PersistentItem* branch = window.getDevSettings().find(kCustomisationBranch);
  Loom::Services::PersistentItem* stored = branch ? branch->find(kLanguageKey) : nullptr;
  const Loom::wstring language =
      stored ? spindle::Widen(static_cast<Loom::string>(*stored)) : Loom::wstring();
  if (language.empty() || !list->selMenulistWithVal(language)) {
    list->selMenulistWithVal(Loom::wstring(kAutoLanguage));
  }
}

struct PluginEntry {
  Loom::string name;
  Loom::wstring label;
};

void BuildPluginBoxes(const DocPtr& doc, Loom::XUL::xWindow& window) {
  const ElemPtr container = spindle::FindById(doc, kPluginBox);
  if (!container) return;
  RemoveChildren(container, spindle::ChildrenOfType(container, Loom::kElemCheckbox));
  const Loom::vector<Loom::string> names = window.getPluginNames();
  const Loom::vector<Loom::wstring> labels = window.getPluginLabels();
  Loom::vector<PluginEntry> entries;
  for (std::size_t i = 0; i < names.size(); ++i) {
    // Image quality serves every page and cannot be switched off here: it gets no box, so
    // okClick leaves it as it is.
    if (names[i] == kImageQualityPlugin) continue;
    entries.push_back({names[i], i < labels.size() ? labels[i] : spindle::Widen(names[i])});
  }
  // The boxes are listed by the label the user reads, then by name.
  std::stable_sort(entries.begin(), entries.end(), [](const PluginEntry& a, const PluginEntry& b) {
    return a.label != b.label ? a.label < b.label : a.name < b.name;
  });
  for (const PluginEntry& entry : entries) {
    const ElemPtr box = doc->createElement(Loom::kElemCheckbox);
    if (!box) continue;
    box->setAttr(Loom::kAttrId, BoxId(entry.name));
    box->setAttr(Loom::kAttrLabel, entry.label);
    box->setAttr(Loom::kAttrChecked,
                 Loom::wstring(spindle::BoolText(window.pluginEnabled(entry.name))));
    // Explicitly usable: restoreDefaultsPlugins ticks only boxes whose disabled is "false".
    box->setAttr(Loom::kAttrDisabled, Loom::wstring(spindle::kFalse));
    container->appendChild(box.get());
  }
  // "generic" heads the plug-in boxes: it is shown only when there is a box under it.
  if (const ElemPtr generic = spindle::FindById(doc, kGenericGroup)) {
    generic->setAttr(Loom::kAttrHidden, Loom::wstring(spindle::BoolText(entries.empty())));
  }
  // A ticked plug-in's exclusions hold from the start, as if the user had ticked it.
  for (const PluginPtr& plugin : window.getPlugins()) {
    if (window.pluginEnabled(plugin->pluginName())) ApplyExclusions(doc, *plugin, true);
  }
}

void StoreLanguage(const DocPtr& doc, Loom::XUL::xWindow& window) {
  const ElemPtr list = spindle::FindById(doc, kLanguageList);
  if (!list) return;
  const Loom::wstring chosen = list->getValfromMenulist();
  Loom::Services::PersistentItem& branch = window.getDevSettings()[kCustomisationBranch];
  const Loom::wstring userDir = Property(doc, "loom.user.path");
  const Loom::File locale = Loom::File(userDir) / Loom::wstring(kLocaleFile);
  // "Auto" (or no choice) follows the system language: nothing is stored for it.
  if (chosen.empty() || chosen == kAutoLanguage) {
    branch.remove(kLanguageKey);
    if (!userDir.empty() && locale.exists()) locale.remove();
    return;
  }
  branch[kLanguageKey] = spindle::Narrow(chosen);
  // locale.txt holds the chosen language code alone, for the host to read at start-up.
  if (!userDir.empty()) locale.write(spindle::Narrow(chosen));
}

}  // namespace

bool xCustomisation::LoadDlg(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!window) return true;
  FillLanguages(doc, *window);
  BuildPluginBoxes(doc, *window);
  return true;
}

bool xCustomisation::OkClick(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!window) return true;
  StoreLanguage(doc, *window);
  Loom::vector<Loom::string> switchedOff;
  for (const Loom::string& name : window->getPluginNames()) {
    const ElemPtr box = spindle::FindById(doc, BoxId(name));
    if (!box) continue;
    const bool on = spindle::IsChecked(box);
    if (!on && window->pluginEnabled(name)) switchedOff.push_back(name);
    window->setPluginEnabled(name, on);
  }
  // The default menu falls back to "Basic" only when its plug-in has just been switched
  // off; a default that was already unavailable stays the user's choice.
  Loom::Services::PersistentItem& defaultMenu = window->getSettings()[kDefaultMenuKey];
  const Loom::string stored = defaultMenu;
  if (std::find(switchedOff.begin(), switchedOff.end(), stored) != switchedOff.end()) {
    defaultMenu = kBasicMenu;
  }
  return true;
}

bool xCustomisation::CheckPluginExclusions(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& box = args.elem(1);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!window || !box) return true;
  const Loom::wstring id = box->getAttr(Loom::kAttrId);
  if (id.empty()) return true;
  PluginPtr match;
  for (const PluginPtr& plugin : window->getPlugins()) {
    if (BoxId(plugin->pluginName()) == id) match = plugin;  // the last match wins
  }
  if (!match) return true;
  ApplyExclusions(doc, *match, spindle::IsChecked(box));
  return true;
}

bool xCustomisation::CheckPlugin(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  const ElemPtr& box = args.elem(2);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!window || !box) return true;
  const Loom::string language = spindle::Narrow(OutputLanguage(doc));
  const std::string_view name = args.str(1);
  for (const PluginPtr& plugin : window->getPlugins()) {
    if (plugin->pluginName() != name) continue;
    const Loom::vector<Loom::string> pdls = plugin->supportedPDL();
    const bool usable =
        plugin->enabled() && std::find(pdls.begin(), pdls.end(), language) != pdls.end();
    box->setAttr(Loom::kAttrDisabled, Loom::wstring(spindle::BoolText(!usable)));
    return true;
  }
  return true;
}

bool xCustomisation::RestoreDefaultsPlugins(spindle::CallArgs& args) {
  const DocPtr& doc = args.doc(0);
  if (!doc) return true;
  Loom::vector<Loom::wstring> factory;
  Loom::PrinterRegistry registry(Property(doc, "loom.driver.name"));
  registry.getMultiString(Loom::wstring(kRegistryKey), Loom::wstring(kFactoryPluginsValue),
                          factory);
  for (Loom::wstring& entry : factory) entry = BoxId(entry);
  for (const ElemPtr& box : PluginBoxes(doc)) {
    const Loom::wstring id = box->getAttr(Loom::kAttrId);
    const bool isFactory = std::find(factory.begin(), factory.end(), id) != factory.end();
    const bool enabled = box->getAttr(Loom::kAttrDisabled) == spindle::kFalse;
    box->setAttr(Loom::kAttrChecked, Loom::wstring(spindle::BoolText(isFactory && enabled)));
  }
  return true;
}
