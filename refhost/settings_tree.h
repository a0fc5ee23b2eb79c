// The reference host's settings trees: PersistentItem nodes, the PersistentSettings root
// with its backing store, and the conversion between a tree and its stored document.
//
// Stored form (the host's settings file, refhost/README.md):
//   <settings value="...">
//     <item key="TEMPLATE"><item key="TEMPLATE_BUTTON_1" value="Draft"/></item>
//   </settings>
// Keys may hold any characters (blanks included); an item without "value" has the empty
// value; children keep their order. The root's own value is the "value" of <settings>.
//
// A node keeps its children in a list, in order, with an index by key beside it, so
// finding, adding and removing a child cost the same however many siblings it has;
// childAt reads a position table rebuilt on first use after a removal. No walk of a tree
// (copy, conversion, destruction, marks) recurses on the machine stack, so trees of any
// depth are safe. A tree read from a stored document is made by SettingsBuild
// (refhost/settings_build.h), whose nodes share blocks of memory.
//
// mark / keep / revert: see settings_marks.h. Every change of a tree goes through the few
// primitives below (setValue, appendChild, removeChild, insertChild, and the exchange of a
// node's whole content that replaceContent and reread make), which tell the tree's marks
// (so a revert costs what changed since the mark) and its observer (so the scenario
// runner learns what a call changed without comparing whole trees).
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <new>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/dom.h"
#include "host/loom_base.h"
#include "host/settings.h"
#include "refhost/change_observer.h"
#include "refhost/settings_index.h"

namespace pugi {
class xml_node;
}

namespace refhost {

class SettingsBuild;
class SettingsMarks;
class SettingsNode;
class SettingsNodeBlock;

// What the nodes of one tree share: the tree they belong to (named in the changes told to
// the store observer, change_observer.h) and its marks. Nodes built outside a tree (a
// copy, a tree being loaded) have none: nothing records or reports their changes.
struct SettingsTree {
  explicit SettingsTree(const Loom::Services::PersistentSettings* owner);
  ~SettingsTree();

  const Loom::Services::PersistentSettings* owner;
  std::unique_ptr<SettingsMarks> marks;
  // Grows with every change of the tree: equal counts mean no change in between.
  std::uint64_t changes = 0;
};

// One node below (or at) the root of a tree. Owned by its parent; the root is owned by
// the PersistentSettings.
class SettingsNode final : public Loom::Services::PersistentItem {
 public:
  SettingsNode(SettingsTree* tree, std::string_view key);
  // Destroys the whole subtree, without recursion.
  ~SettingsNode();
  // Every node is deleted this way, whether it was made on its own (new) or in a block
  // of a build, which goes when its last node does.
  static void operator delete(SettingsNode* node, std::destroying_delete_t);

  PersistentItem& operator[](const Loom::string& key) override { return ensureChild(key); }
  using PersistentItem::operator[];
  PersistentItem& operator=(const Loom::string& value) override;
  using PersistentItem::operator=;
  operator Loom::string() const override { return value_; }
  bool remove(const Loom::string& key) override;
  PersistentItem* find(const Loom::string& key) override { return findChild(key); }
  const Loom::string& key() const override { return key_; }
  std::size_t getNumChildren() const override { return children_ ? children_->index.size() : 0; }
  // Throws std::out_of_range past the last child.
  PersistentItem& childAt(std::size_t index) override { return child(index); }
  void mark() override;
  void keep() override;
  void revert() override;

  const Loom::string& value() const { return value_; }
  SettingsNode& child(std::size_t index) const;
  SettingsNode* findChild(std::string_view key) const;
  // The child with `key`, appended when missing.
  SettingsNode& ensureChild(std::string_view key);

  SettingsNode* parent() const { return parent_; }
  SettingsNode* firstChild() const { return first_; }
  SettingsNode* nextSibling() const { return next_; }
  // Orders the node among its siblings: it grows along the list of children (a node put
  // back by a revert gets its old place and number back), so comparing the numbers on
  // the way from the root compares places in the tree.
  std::uint64_t order() const { return order_; }
  // The keys from the root down to this node (the root's own key left out).
  std::vector<Loom::string> path() const;

  // The primitives every change goes through.
  void setValue(Loom::string value);
  SettingsNode& appendChild(std::string_view key);
  // Unlinks `child`: it is kept while a mark's journal needs it, else destroyed.
  void removeChild(SettingsNode& child);
  // Links the detached `child` before `next` (null: last). It keeps its order number
  // when `keepOrder`, else becomes the last in order.
  void insertChild(SettingsNode& child, SettingsNode* next, bool keepOrder);

  // Replaces the value and the children by those of `source`, a tree of its own, which is
  // left empty. Costs the size of the moved subtrees when they must be pointed at this
  // tree, else the number of children moved in.
  void replaceContent(SettingsNode& source);
  // Replaces the value and the children by what `read` builds (with a SettingsBuild) into
  // the empty node it is given; false, with the content as it was, when `read` fails.
  // `read` builds in place, so its nodes are made where they stay: the old content waits
  // aside meanwhile, its children still pointing here, and comes back on failure.
  bool reread(const std::function<bool(SettingsNode&)>& read);
  // A detached deep copy of this subtree, keeping order numbers, for `tree` (null: none).
  // When `copies` is given, it maps each node copied to its copy.
  std::unique_ptr<SettingsNode> copy(
      SettingsTree* tree,
      std::unordered_map<const SettingsNode*, SettingsNode*>* copies = nullptr) const;

 private:
  friend class SettingsBuild;
  friend class SettingsMarks;

  void link(SettingsNode& child, SettingsNode* next);
  void unlink(SettingsNode& child);
  void tell(Change::Kind kind, std::string_view oldValue = {}) const;
  // Points every node of this subtree at `tree`; a leaf, as most nodes are, inline.
  void adopt(SettingsTree* tree) {
    tree_ = tree;
    if (first_ != nullptr) adoptDescendants(tree);
  }
  void adoptDescendants(SettingsTree* tree);
  // Deletes the children and their subtrees, without recursion and without telling.
  void deleteChildren();
  // Takes over the value and the children of `from`, which is left empty, without
  // pointing the children here: only to set content aside and back.
  void takeContent(SettingsNode& from);
  // Takes the value and the children of `other`, which takes this node's.
  void swapContent(SettingsNode& other);
  // Exchanges the value and the children with those `held` holds, whose children point
  // here too. Both replaceContent and reread are one such change; so is its undo, which
  // exchanges the same two contents again.
  void exchangeContent(const std::shared_ptr<SettingsNode>& held);
  // Tells and records an exchange just made: `held` holds the content that left. The
  // content stays alive while a journal keeps `held`, else it goes with it.
  void recordExchange(const std::shared_ptr<SettingsNode>& held);

  // What only a node with children needs, made with its first child: leaves, most of a
  // tree, stay small.
  struct Children {
    SettingsIndex index;
    // The children by position; rebuilt by child() when empty while children exist.
    std::vector<SettingsNode*> positions;
  };
  Children& children();

  SettingsTree* tree_;
  SettingsNode* parent_ = nullptr;
  Loom::string key_;
  Loom::string value_;
  SettingsNode* first_ = nullptr;
  SettingsNode* last_ = nullptr;
  SettingsNode* prev_ = nullptr;
  SettingsNode* next_ = nullptr;
  std::uint64_t order_ = 0;
  // The order number the next child gets; while a build appends children, their count.
  std::uint64_t nextOrder_ = 0;
  std::unique_ptr<Children> children_;
  // The block this node was made in; null when it was made on its own.
  SettingsNodeBlock* block_ = nullptr;
  // How many journal entries of marks hold this node since it was removed.
  int journalHolds_ = 0;
};

// The tree under `root` as a settings document element (<settings> with <item>s); null
// when the host is out of memory. Throws utfcpp's exception on a key or value that is
// not UTF-8.
Loom::SmartPtr<Loom::Dom::Node> SettingsToDom(const SettingsNode& root);

// Builds the content of a settings document into the empty node `target`. False when
// `root` is not a <settings> element. Items with the same key under one parent merge
// into one node, the later value winning.
bool SettingsFromDom(Loom::Dom::Node& root, SettingsNode& target);
// The same from a document pugixml parsed with ParseXmlText (refhost/xml_text.h), whose
// text is known to be UTF-8: a file is built straight from its text, without a DOM tree.
bool SettingsFromXml(const pugi::xml_node& root, SettingsNode& target);

}  // namespace refhost
