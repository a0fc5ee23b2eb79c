#include "settings/branch_nodes.h"

#include <cstdint>

#include "core/text.h"
#include "host/codes.h"
#include "host/script.h"
#include "host/xclass.h"

namespace spindle::settings_internal {

namespace {

constexpr std::u16string_view kItem = u"item";
constexpr std::u16string_view kKey = u"key";
constexpr std::u16string_view kValue = u"value";

}  // namespace

Loom::SmartPtr<Loom::Dom::Node> BranchToNode(Loom::Services::PersistentItem& branch) {
  Loom::SmartPtr<Loom::Dom::Node> node = Loom::Dom::createNode(Loom::wstring(kItem));
  node->attributes().set(Loom::wstring(kKey), Widen(branch.key()));
  const Loom::string value = branch;
  if (!value.empty()) node->attributes().set(Loom::wstring(kValue), Widen(value));
  for (std::size_t i = 0; i < branch.getNumChildren(); ++i) {
    node->children().append(BranchToNode(branch.childAt(i)));
  }
  return node;
}

void NodeToBranch(Loom::Dom::Node& node, Loom::Services::PersistentItem& branch) {
  branch = Narrow(node.attributes()[Loom::wstring(kValue)]);
  while (branch.getNumChildren() > 0) branch.remove(branch.childAt(0).key());
  Loom::Dom::ChildVector& children = node.children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) {
    Loom::Dom::Node* child = children[i];
    if (child->getName() != kItem) continue;
    NodeToBranch(*child, branch[Narrow(child->attributes()[Loom::wstring(kKey)])]);
  }
}

Loom::Services::PersistentItem* ImageQualitySettings(const DocPtr& doc) {
  const Loom::SmartPtr<Loom::JS::Environment> env = doc->getScriptEnv();
  if (!env) return nullptr;
  const Loom::SmartPtr<Loom::JS::Object> global = env->getObject("imgQuality");
  xClass* plugin = global ? global->toPtr() : nullptr;
  if (plugin == nullptr) return nullptr;
  xarg_entry arg;
  arg.kind = Loom::kArgDocument;
  arg.value = reinterpret_cast<std::uintptr_t>(doc.get());
  arg.extra = 0;
  xarg_entry result;
  if (!plugin->call("getSettingsObject", 1, &arg, &result)) return nullptr;
  return reinterpret_cast<Loom::Services::PersistentItem*>(
      static_cast<std::uintptr_t>(result.value));
}

}  // namespace spindle::settings_internal
