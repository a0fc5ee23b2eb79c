#include "settings/def_menu_settings.h"

#include "core/elements.h"
#include "core/text.h"
#include "host/codes.h"
#include "host/printer.h"
#include "host/settings.h"

using spindle::Count;

const spindle::Method<xdefMenuSettings> xdefMenuSettings::kMethods[] = {
    {{"loaddefmenusettings", Count::kExactly, 1, {Loom::kArgDocument}},
     &xdefMenuSettings::LoadDefMenuSettings},
    {{"savedefmenusettings", Count::kExactly, 1, {Loom::kArgDocument}},
     &xdefMenuSettings::SaveDefMenuSettings},
};

bool xdefMenuSettings::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xdefMenuSettings>(*this, kMethods, false, method, argc, args);
}

namespace {

constexpr char16_t kDefaultMenuList[] = u"cmb_DefMenSet";
constexpr char kDefaultMenuKey[] = "DEFMENUSETTINGS";

}  // namespace

bool xdefMenuSettings::LoadDefMenuSettings(spindle::CallArgs& args) {
  const spindle::DocPtr& doc = args.doc(0);
  const spindle::ElemPtr list = spindle::FindById(doc, kDefaultMenuList);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!list || !window) return true;
  const Loom::wstring stored =
      spindle::Widen(static_cast<Loom::string>(window->getSettings()[kDefaultMenuKey]));
  const Loom::XUL::ElemList items = spindle::ChildrenOfType(list, Loom::kElemMenuItem);

  for (const spindle::ElemPtr& item : items)
    item->setAttr(Loom::kAttrHidden, Loom::wstring(u"true"));
  for (const Loom::SmartPtr<Loom::Plugin>& plugin : window->getPlugins()) {
    if (!plugin->enabled()) continue;
    const Loom::wstring name = spindle::Widen(plugin->pluginName());
    for (const spindle::ElemPtr& item : items) {
      if (spindle::ValueOf(item) == name) item->setAttr(Loom::kAttrHidden, Loom::wstring(u"false"));
    }
  }
  // By position, whether or not the item is available: the stored choice stays shown even
  // when its plug-in has been disabled since.
  for (std::size_t i = 0; i < items.size(); ++i) {
    if (spindle::ValueOf(items[i]) == stored) {
      list->setSelectedIndex(static_cast<int>(i));
      break;
    }
  }
  return true;
}

bool xdefMenuSettings::SaveDefMenuSettings(spindle::CallArgs& args) {
  const spindle::DocPtr& doc = args.doc(0);
  const spindle::ElemPtr list = spindle::FindById(doc, kDefaultMenuList);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!list || !window) return true;
  Loom::wstring chosen;
  for (const spindle::ElemPtr& item : spindle::ChildrenOfType(list, Loom::kElemMenuItem)) {
    if (spindle::IsTrue(item->getAttr(Loom::kAttrSelected))) {
      chosen = spindle::ValueOf(item);
      break;
    }
  }
  window->getSettings()[kDefaultMenuKey] = spindle::Narrow(chosen);
  return true;
}
