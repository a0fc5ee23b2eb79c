// The reference host's settings trees: PersistentItem nodes, the PersistentSettings root
// with its backing store, and the conversion between a tree and its stored document.
//
// Stored form (the host's settings file, refhost/README.md):
//   <settings value="...">
//     <item key="TEMPLATE"><item key="TEMPLATE_BUTTON_1" value="Draft"/></item>
//   </settings>
// Keys and values may hold any bytes (blanks included; what XML cannot carry is stored
// escaped in "key-bytes" / "value-bytes"); an item without a value attribute has the
// empty value; children keep their order. The root's own value is the "value" of <settings>.
//
// mark / keep / revert work on snapshots kept by the tree, keyed by the path of keys from
// the root to the marked node. So a mark outlives a reload: a branch marked before
// loadSettings goes back to its marked state when the branch of the same path is
// reverted after it (the factory reset relies on this). Reverting restores the node's
// value and replaces its whole subtree by a copy of the snapshot: references to the
// node's descendants taken before a revert are invalid after it (the node itself stays).
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "host/dom.h"
#include "host/loom_base.h"
#include "host/settings.h"

namespace refhost {

struct SettingsMarks;

// One node below (or at) the root of a tree. Owned by its parent; the root is owned by
// the PersistentSettings.
class SettingsNode final : public Loom::Services::PersistentItem {
 public:
  SettingsNode(SettingsMarks* marks, SettingsNode* parent, Loom::string key);
  ~SettingsNode();

  PersistentItem& operator[](const Loom::string& key) override;
  using PersistentItem::operator[];
  PersistentItem& operator=(const Loom::string& value) override;
  using PersistentItem::operator=;
  operator Loom::string() const override { return value_; }
  bool remove(const Loom::string& key) override;
  PersistentItem* find(const Loom::string& key) override { return findChild(key); }
  const Loom::string& key() const override { return key_; }
  std::size_t getNumChildren() const override { return children_.size(); }
  // Throws std::out_of_range past the last child.
  PersistentItem& childAt(std::size_t index) override { return *children_.at(index); }
  void mark() override;
  void keep() override;
  void revert() override;

  const Loom::string& value() const { return value_; }
  const SettingsNode& child(std::size_t index) const { return *children_.at(index); }
  SettingsNode* findChild(const Loom::string& key) const;
  // The child with `key`, appended when missing.
  SettingsNode& ensureChild(const Loom::string& key);
  // A new last child with `key`, for callers that know no child has it.
  SettingsNode& appendChild(const Loom::string& key);
  // Takes over the value and the children of `other`, which is left empty.
  void replaceContent(SettingsNode& other);

 private:
  // A deep copy of this subtree, hung under `parent` (null: detached).
  std::unique_ptr<SettingsNode> copyTree(SettingsNode* parent) const;
  std::vector<Loom::string> path() const;

  SettingsMarks* marks_;
  SettingsNode* parent_;
  Loom::string key_;
  Loom::string value_;
  std::vector<std::unique_ptr<SettingsNode>> children_;
};

// The tree under `root` as a settings document element (<settings> with <item>s); null
// when the host is out of memory. A key or value that XML cannot carry as it is goes
// into "key-bytes" / "value-bytes", escaped (refhost/README.md), and reads back exactly.
Loom::SmartPtr<Loom::Dom::Node> SettingsToDom(const SettingsNode& root);

// Builds the content of a settings document into the empty node `target`. False when
// `root` is not a <settings> element. Items with the same key under one parent merge
// into one node, the later value winning.
bool SettingsFromDom(Loom::Dom::Node& root, SettingsNode& target);

}  // namespace refhost
