// Settings nodes: the ordered, indexed children and the primitives every change takes.
#include "refhost/settings_tree.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "refhost/settings_build.h"
#include "refhost/settings_marks.h"

namespace refhost {

SettingsTree::SettingsTree(const Loom::Services::PersistentSettings* owner_)
    : owner(owner_), marks(std::make_unique<SettingsMarks>()) {}

SettingsTree::~SettingsTree() = default;

SettingsNode::SettingsNode(SettingsTree* tree, std::string_view key) : tree_(tree), key_(key) {}

SettingsNode::~SettingsNode() { deleteChildren(); }

void SettingsNode::operator delete(SettingsNode* node, std::destroying_delete_t) {
  SettingsNodeBlock* const block = node->block_;
  node->~SettingsNode();
  if (block != nullptr) {
    block->release();
  } else {
    ::operator delete(node);
  }
}

void SettingsNode::deleteChildren() {
  children_.reset();
  if (first_ == nullptr) return;  // a leaf, as most are
  // The first children of the lists to delete; each node's own list is taken from it
  // before it is deleted, so no destructor below finds children of its own. First in,
  // first out, so that a tree read from a file is deleted in the order it lies in memory.
  std::vector<SettingsNode*> lists{std::exchange(first_, nullptr)};
  last_ = nullptr;
  for (std::size_t taken = 0; taken < lists.size(); ++taken) {
    SettingsNode* node = lists[taken];
    while (node != nullptr) {
      SettingsNode* const next = node->next_;
      if (node->first_ != nullptr) lists.push_back(std::exchange(node->first_, nullptr));
      delete node;
      node = next;
    }
  }
}

Loom::Services::PersistentItem& SettingsNode::operator=(const Loom::string& value) {
  setValue(value);
  return *this;
}

bool SettingsNode::remove(const Loom::string& key) {
  SettingsNode* found = findChild(key);
  if (found == nullptr) return false;
  removeChild(*found);
  return true;
}

SettingsNode& SettingsNode::child(std::size_t index) const {
  if (index >= getNumChildren())
    throw std::out_of_range("settings node has no child " + std::to_string(index));
  std::vector<SettingsNode*>& positions = children_->positions;
  if (positions.empty()) {
    positions.reserve(getNumChildren());
    for (SettingsNode* node = first_; node != nullptr; node = node->next_) {
      positions.push_back(node);
    }
  }
  return *positions[index];
}

SettingsNode* SettingsNode::findChild(std::string_view key) const {
  return children_ ? children_->index.find(key) : nullptr;
}

SettingsNode& SettingsNode::ensureChild(std::string_view key) {
  if (SettingsNode* existing = findChild(key)) return *existing;
  return appendChild(key);
}

SettingsNode::Children& SettingsNode::children() {
  if (!children_) children_ = std::make_unique<Children>();
  return *children_;
}

std::vector<Loom::string> SettingsNode::path() const {
  std::vector<Loom::string> keys;
  for (const SettingsNode* node = this; node->parent_ != nullptr; node = node->parent_) {
    keys.push_back(node->key_);
  }
  std::reverse(keys.begin(), keys.end());
  return keys;
}

void SettingsNode::mark() { tree_->marks->mark(*this); }
void SettingsNode::keep() { tree_->marks->keep(*this); }
void SettingsNode::revert() { tree_->marks->revert(*this); }

void SettingsNode::link(SettingsNode& child, SettingsNode* next) {
  child.parent_ = this;
  child.next_ = next;
  child.prev_ = next != nullptr ? next->prev_ : last_;
  (child.prev_ != nullptr ? child.prev_->next_ : first_) = &child;
  (next != nullptr ? next->prev_ : last_) = &child;
  Children& children = this->children();
  children.index.insert(&child);
  if (next == nullptr && children.positions.size() + 1 == children.index.size()) {
    children.positions.push_back(&child);
  } else {
    children.positions.clear();
  }
}

void SettingsNode::unlink(SettingsNode& child) {
  (child.prev_ != nullptr ? child.prev_->next_ : first_) = child.next_;
  (child.next_ != nullptr ? child.next_->prev_ : last_) = child.prev_;
  children_->index.erase(&child);
  children_->positions.clear();
  child.parent_ = child.prev_ = child.next_ = nullptr;
}

void SettingsNode::tell(Change::Kind kind, std::string_view oldValue) const {
  if (tree_ == nullptr) return;
  ++tree_->changes;
  ChangeObserver* const observer = StoreObserver();
  if (observer == nullptr) return;
  observer->onChange(
      Change{.kind = kind, .settings = tree_->owner, .setting = this, .oldSetting = oldValue});
}

void SettingsNode::adoptDescendants(SettingsTree* tree) {
  std::vector<SettingsNode*> pending{this};
  while (!pending.empty()) {
    SettingsNode* node = pending.back();
    pending.pop_back();
    node->tree_ = tree;
    for (SettingsNode* child = node->first_; child != nullptr; child = child->next_) {
      pending.push_back(child);
    }
  }
}

void SettingsNode::setValue(Loom::string value) {
  if (tree_ != nullptr) tree_->marks->recordValue(*this);
  std::swap(value_, value);
  tell(Change::Kind::kSettingChanged, value);
}

SettingsNode& SettingsNode::appendChild(std::string_view key) {
  auto* child = new SettingsNode(tree_, key);
  child->order_ = nextOrder_++;
  link(*child, nullptr);
  if (tree_ != nullptr) tree_->marks->recordAdded(*child);
  child->tell(Change::Kind::kSettingAdded);
  return *child;
}

void SettingsNode::removeChild(SettingsNode& child) {
  if (tree_ != nullptr) tree_->marks->beforeRemoval(child);
  child.tell(Change::Kind::kSettingRemoved);
  SettingsNode* const next = child.next_;
  unlink(child);
  if (tree_ != nullptr) tree_->marks->recordRemoved(*this, child, next);
  if (child.journalHolds_ == 0) delete &child;
}

void SettingsNode::insertChild(SettingsNode& child, SettingsNode* next, bool keepOrder) {
  if (!keepOrder) child.order_ = nextOrder_++;
  link(child, next);
  if (tree_ != nullptr) tree_->marks->recordAdded(child);
  child.tell(Change::Kind::kSettingAdded);
}

void SettingsNode::replaceContent(SettingsNode& source) {
  auto held = std::make_shared<SettingsNode>(nullptr, std::string_view());
  held->takeContent(source);
  for (SettingsNode* child = held->first_; child != nullptr; child = child->next_) {
    child->parent_ = this;
    child->adopt(tree_);
  }
  exchangeContent(held);
}

bool SettingsNode::reread(const std::function<bool(SettingsNode&)>& read) {
  auto held = std::make_shared<SettingsNode>(nullptr, std::string_view());
  held->takeContent(*this);
  const auto restore = [&] {
    deleteChildren();
    takeContent(*held);
  };
  try {
    if (!read(*this)) {
      restore();
      return false;
    }
  } catch (...) {
    restore();
    throw;
  }
  recordExchange(held);
  return true;
}

void SettingsNode::takeContent(SettingsNode& from) {
  value_ = std::exchange(from.value_, Loom::string());
  first_ = std::exchange(from.first_, nullptr);
  last_ = std::exchange(from.last_, nullptr);
  children_ = std::move(from.children_);
  nextOrder_ = std::exchange(from.nextOrder_, 0);
}

void SettingsNode::swapContent(SettingsNode& other) {
  SettingsNode leaving(nullptr, std::string_view());
  leaving.takeContent(*this);
  takeContent(other);
  other.takeContent(leaving);
}

void SettingsNode::exchangeContent(const std::shared_ptr<SettingsNode>& held) {
  swapContent(*held);
  recordExchange(held);
}

void SettingsNode::recordExchange(const std::shared_ptr<SettingsNode>& held) {
  tell(Change::Kind::kSettingChanged, held->value_);
  if (tree_ == nullptr) return;
  tree_->marks->recordExchange(*this, held);
  // Each child that left, as it was here, then each that came.
  if (StoreObserver() == nullptr) return;
  for (const SettingsNode* child = held->first_; child != nullptr; child = child->next_) {
    child->tell(Change::Kind::kSettingRemoved);
  }
  for (const SettingsNode* child = first_; child != nullptr; child = child->next_) {
    child->tell(Change::Kind::kSettingAdded);
  }
}

std::unique_ptr<SettingsNode> SettingsNode::copy(
    SettingsTree* tree, std::unordered_map<const SettingsNode*, SettingsNode*>* copies) const {
  auto top = std::make_unique<SettingsNode>(tree, key_);
  std::vector<std::pair<const SettingsNode*, SettingsNode*>> pending{{this, top.get()}};
  while (!pending.empty()) {
    const auto [from, to] = pending.back();
    pending.pop_back();
    if (copies != nullptr) (*copies)[from] = to;
    to->value_ = from->value_;
    to->order_ = from->order_;
    to->nextOrder_ = from->nextOrder_;
    for (const SettingsNode* child = from->first_; child != nullptr; child = child->next_) {
      auto* made = new SettingsNode(tree, child->key_);
      to->link(*made, nullptr);
      pending.emplace_back(child, made);
    }
  }
  return top;
}

}  // namespace refhost
