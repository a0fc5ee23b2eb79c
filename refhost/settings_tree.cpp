// Settings nodes: the ordered, indexed children and the primitives every change takes.
#include "refhost/settings_tree.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "refhost/settings_marks.h"

namespace refhost {

SettingsTree::SettingsTree(const Loom::Services::PersistentSettings* owner_)
    : owner(owner_), marks(std::make_unique<SettingsMarks>()) {}

SettingsTree::~SettingsTree() = default;

SettingsNode::SettingsNode(SettingsTree* tree, Loom::string key)
    : tree_(tree), key_(std::move(key)) {}

SettingsNode::~SettingsNode() {
  // Each node taken off the pending list has its children moved to the list before it is
  // deleted, so no destructor below ever finds children of its own.
  std::vector<SettingsNode*> pending;
  const auto takeChildren = [&pending](SettingsNode& node) {
    for (SettingsNode* child = node.first_; child != nullptr; child = child->next_) {
      pending.push_back(child);
    }
    node.first_ = node.last_ = nullptr;
  };
  takeChildren(*this);
  while (!pending.empty()) {
    SettingsNode* node = pending.back();
    pending.pop_back();
    takeChildren(*node);
    delete node;
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
  if (index >= index_.size())
    throw std::out_of_range("settings node has no child " + std::to_string(index));
  if (positions_.empty()) {
    positions_.reserve(index_.size());
    for (SettingsNode* node = first_; node != nullptr; node = node->next_) {
      positions_.push_back(node);
    }
  }
  return *positions_[index];
}

SettingsNode* SettingsNode::findChild(std::string_view key) const {
  const auto found = index_.find(key);
  return found == index_.end() ? nullptr : found->second;
}

SettingsNode& SettingsNode::ensureChild(const Loom::string& key) {
  if (SettingsNode* existing = findChild(key)) return *existing;
  return appendChild(key);
}

void SettingsNode::reserveChildren(std::size_t count) { index_.reserve(count); }

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
  index_.emplace(std::string_view(child.key_), &child);
  if (next == nullptr && positions_.size() + 1 == index_.size()) {
    positions_.push_back(&child);
  } else {
    positions_.clear();
  }
}

void SettingsNode::unlink(SettingsNode& child) {
  (child.prev_ != nullptr ? child.prev_->next_ : first_) = child.next_;
  (child.next_ != nullptr ? child.next_->prev_ : last_) = child.prev_;
  index_.erase(std::string_view(child.key_));
  child.parent_ = child.prev_ = child.next_ = nullptr;
  positions_.clear();
}

void SettingsNode::tell(Change::Kind kind, std::string_view oldValue) const {
  if (tree_ == nullptr) return;
  ++tree_->changes;
  ChangeObserver* const observer = StoreObserver();
  if (observer == nullptr) return;
  observer->onChange(
      Change{.kind = kind, .settings = tree_->owner, .setting = this, .oldSetting = oldValue});
}

void SettingsNode::adopt(SettingsTree* tree) {
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

SettingsNode& SettingsNode::appendChild(Loom::string key) {
  auto* child = new SettingsNode(tree_, std::move(key));
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
  setValue(std::exchange(source.value_, Loom::string()));
  if (tree_ != nullptr && tree_->marks->journaling()) {
    // Child by child, so that the journals can undo it.
    while (last_ != nullptr) removeChild(*last_);
    while (SettingsNode* moved = source.first_) {
      source.unlink(*moved);
      if (moved->tree_ != tree_) moved->adopt(tree_);
      insertChild(*moved, nullptr, false);
    }
    return;
  }
  // No journal to keep: the lists of children change hands whole.
  for (const SettingsNode* child = first_; child != nullptr; child = child->next_) {
    child->tell(Change::Kind::kSettingRemoved);
  }
  SettingsNode old(nullptr, Loom::string());
  old.takeChildren(*this);
  takeChildren(source);
  for (SettingsNode* child = first_; child != nullptr; child = child->next_) {
    if (child->tree_ != tree_) child->adopt(tree_);
    child->tell(Change::Kind::kSettingAdded);
  }
}

void SettingsNode::takeChildren(SettingsNode& from) {
  first_ = std::exchange(from.first_, nullptr);
  last_ = std::exchange(from.last_, nullptr);
  index_ = std::move(from.index_);
  from.index_.clear();
  positions_ = std::move(from.positions_);
  from.positions_.clear();
  nextOrder_ = from.nextOrder_;
  for (SettingsNode* child = first_; child != nullptr; child = child->next_) child->parent_ = this;
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
