// A settings tree and its stored document: both directions walk with a work list.
#include <deque>
#include <new>
#include <utility>
#include <vector>

#include "refhost/settings_tree.h"
#include "refhost/text.h"

namespace refhost {
namespace {

constexpr char16_t kSettingsElement[] = u"settings";
constexpr char16_t kItemElement[] = u"item";
constexpr char16_t kKeyAttribute[] = u"key";
constexpr char16_t kValueAttribute[] = u"value";

}  // namespace

Loom::SmartPtr<Loom::Dom::Node> SettingsToDom(const SettingsNode& root) {
  Loom::SmartPtr<Loom::Dom::Node> settings = Loom::Dom::createNode(kSettingsElement);
  if (!settings) return nullptr;
  if (!root.value().empty()) settings->attributes().set(kValueAttribute, Utf16(root.value()));
  // Each pair's children are appended in order when it is taken, so the order in which
  // the pairs are taken does not matter.
  std::vector<std::pair<const SettingsNode*, Loom::Dom::Node*>> pending{{&root, settings.get()}};
  try {
    while (!pending.empty()) {
      const auto [from, to] = pending.back();
      pending.pop_back();
      for (const SettingsNode* child = from->firstChild(); child != nullptr;
           child = child->nextSibling()) {
        Loom::SmartPtr<Loom::Dom::Node> item = Loom::Dom::createNode(kItemElement);
        if (!item) throw std::bad_alloc();
        item->attributes().set(kKeyAttribute, Utf16(child->key()));
        if (!child->value().empty()) {
          item->attributes().set(kValueAttribute, Utf16(child->value()));
        }
        pending.emplace_back(child, item.get());
        to->children().append(std::move(item));
      }
    }
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
  return settings;
}

bool SettingsFromDom(Loom::Dom::Node& root, SettingsNode& target) {
  if (root.getName() != kSettingsElement) return false;
  target.setValue(Loom::string(Utf8(root.attributes()[kValueAttribute])));
  // First in, first out: items that merge into one node are read in document order, so
  // the later value wins and merged children keep the order they had in the file.
  std::deque<std::pair<Loom::Dom::Node*, SettingsNode*>> pending{{&root, &target}};
  while (!pending.empty()) {
    const auto [from, to] = pending.front();
    pending.pop_front();
    Loom::Dom::ChildVector& children = from->children();
    to->reserveChildren(children.getNumChildren());
    for (std::size_t i = 0; i < children.getNumChildren(); ++i) {
      Loom::Dom::Node& item = *children[i];
      if (item.getName() != kItemElement) continue;
      SettingsNode& node = to->ensureChild(Loom::string(Utf8(item.attributes()[kKeyAttribute])));
      node.setValue(Loom::string(Utf8(item.attributes()[kValueAttribute])));
      pending.emplace_back(&item, &node);
    }
  }
  return true;
}

}  // namespace refhost
