// Marks: journals of undo entries while the marked node is in the tree, snapshots after.
#include "refhost/settings_marks.h"

#include <unordered_map>
#include <utility>

#include "refhost/settings_tree.h"

namespace refhost {

// How to undo one change. A removed node is held by the entry (journalHolds_) until the
// entry is undone or dropped; content exchanged away is held by the entries of every
// journal that recorded the exchange.
struct SettingsMarks::Entry {
  enum class Kind { kValue, kAdded, kRemoved, kExchanged };
  Kind kind = Kind::kValue;
  SettingsNode* node = nullptr;    // the node set, added, removed, or whose content changed
  SettingsNode* parent = nullptr;  // kRemoved: where it stood...
  SettingsNode* next = nullptr;    // ...before which sibling (null: last)
  Loom::string oldValue = {};      // kValue
  // kExchanged: holds the content the node had before. Undone by exchanging again, which
  // other journals record as one more exchange with the same holder: an exchange undoes
  // itself, so each journal undoes its own entries in order whatever the others did.
  std::shared_ptr<SettingsNode> held = {};
};

struct SettingsMarks::Mark {
  SettingsNode* node;  // the marked node while it is in the tree, else null
  std::vector<Entry> journal;
  std::unique_ptr<SettingsNode> snapshot;  // the state at the mark, once node is null
};

namespace {

bool IsWithin(const SettingsNode& node, const SettingsNode& top) {
  for (const SettingsNode* at = &node; at != nullptr; at = at->parent()) {
    if (at == &top) return true;
  }
  return false;
}

}  // namespace

SettingsMarks::SettingsMarks() = default;

SettingsMarks::~SettingsMarks() {
  for (auto& [path, mark] : marks_) drop(mark);
}

void SettingsMarks::mark(SettingsNode& node) {
  Path path = node.path();
  if (const auto found = marks_.find(path); found != marks_.end()) {
    drop(found->second);
    marks_.erase(found);
  }
  marks_.emplace(std::move(path), Mark{&node, {}, nullptr});
  ++journaling_;
}

void SettingsMarks::keep(SettingsNode& node) {
  if (const auto found = marks_.find(node.path()); found != marks_.end()) {
    drop(found->second);
    marks_.erase(found);
  }
}

void SettingsMarks::revert(SettingsNode& node) {
  const auto found = marks_.find(node.path());
  if (found == marks_.end()) return;
  // Taken out first: what the revert does is a change that other marks record, this one
  // not.
  Mark mark = std::move(found->second);
  marks_.erase(found);
  if (mark.node == nullptr) {
    node.replaceContent(*mark.snapshot);
    return;
  }
  --journaling_;
  // Newest first. (Reverse iterators rather than views::reverse, which clang 14 cannot
  // compile against this standard library.)
  for (auto it = mark.journal.rbegin(); it != mark.journal.rend(); ++it) {
    Entry& entry = *it;
    switch (entry.kind) {
      case Entry::Kind::kValue:
        entry.node->setValue(std::move(entry.oldValue));
        break;
      case Entry::Kind::kAdded:
        entry.node->parent()->removeChild(*entry.node);
        break;
      case Entry::Kind::kRemoved:
        entry.parent->insertChild(*entry.node, entry.next, true);
        --entry.node->journalHolds_;
        break;
      case Entry::Kind::kExchanged:
        entry.node->exchangeContent(entry.held);
        break;
    }
  }
}

std::vector<std::vector<SettingsMarks::Entry>*> SettingsMarks::journalsCovering(
    const SettingsNode& node) {
  std::vector<std::vector<Entry>*> journals;
  if (journaling_ == 0) return journals;
  for (auto& [path, mark] : marks_) {
    if (mark.node != nullptr && IsWithin(node, *mark.node)) journals.push_back(&mark.journal);
  }
  return journals;
}

void SettingsMarks::recordValue(SettingsNode& node) {
  for (auto* journal : journalsCovering(node)) {
    Entry& entry = journal->emplace_back();
    entry.node = &node;
    entry.oldValue = node.value();
  }
}

void SettingsMarks::recordAdded(SettingsNode& child) {
  for (auto* journal : journalsCovering(*child.parent())) {
    Entry& entry = journal->emplace_back();
    entry.kind = Entry::Kind::kAdded;
    entry.node = &child;
  }
}

void SettingsMarks::recordRemoved(SettingsNode& parent, SettingsNode& child, SettingsNode* next) {
  for (auto* journal : journalsCovering(parent)) {
    Entry& entry = journal->emplace_back();
    entry.kind = Entry::Kind::kRemoved;
    entry.node = &child;
    entry.parent = &parent;
    entry.next = next;
    ++child.journalHolds_;
  }
}

void SettingsMarks::recordExchange(SettingsNode& node, const std::shared_ptr<SettingsNode>& held) {
  // No node of the content that came can be marked yet: it was built, or held away from
  // the tree, where no mark is taken.
  snapshotMarksWithin(node, false);
  for (auto* journal : journalsCovering(node)) {
    Entry& entry = journal->emplace_back();
    entry.kind = Entry::Kind::kExchanged;
    entry.node = &node;
    entry.held = held;
  }
}

void SettingsMarks::beforeRemoval(SettingsNode& child) { snapshotMarksWithin(child, true); }

void SettingsMarks::snapshotMarksWithin(const SettingsNode& top, bool withTop) {
  if (journaling_ == 0) return;
  for (auto& [path, mark] : marks_) {
    if (mark.node == nullptr || (mark.node == &top && !withTop) || !IsWithin(*mark.node, top)) {
      continue;
    }
    mark.snapshot = stateAtMark(mark);
    drop(mark);
  }
}

void SettingsMarks::drop(Mark& mark) {
  if (mark.node == nullptr) return;
  mark.node = nullptr;
  --journaling_;
  for (const Entry& entry : mark.journal) {
    if (entry.kind != Entry::Kind::kRemoved) continue;
    SettingsNode* removed = entry.node;
    if (--removed->journalHolds_ == 0 && removed->parent() == nullptr) delete removed;
  }
  mark.journal.clear();
}

// A copy of the marked subtree as it is, with the journal undone on the copy: the
// journal's nodes are the originals, so each is looked up in the map of copies. A node
// added since the mark is parked when its addition is undone, in case an earlier entry
// (its removal before a revert elsewhere put it back) needs it again. Held content is
// copied when an entry first exchanges with it, and that copy then stands for the holder.
std::unique_ptr<SettingsNode> SettingsMarks::stateAtMark(const Mark& mark) {
  std::unordered_map<const SettingsNode*, SettingsNode*> copies;
  std::unordered_map<const SettingsNode*, std::unique_ptr<SettingsNode>> parked;
  std::unordered_map<const SettingsNode*, std::unique_ptr<SettingsNode>> heldCopies;
  std::unique_ptr<SettingsNode> state = mark.node->copy(nullptr, &copies);
  for (auto it = mark.journal.rbegin(); it != mark.journal.rend(); ++it) {
    const Entry& entry = *it;
    switch (entry.kind) {
      case Entry::Kind::kValue:
        copies.at(entry.node)->value_ = entry.oldValue;
        break;
      case Entry::Kind::kAdded: {
        SettingsNode* added = copies.at(entry.node);
        added->parent_->unlink(*added);
        parked[entry.node].reset(added);
        break;
      }
      case Entry::Kind::kRemoved: {
        std::unique_ptr<SettingsNode> removed;
        if (const auto found = parked.find(entry.node); found != parked.end()) {
          removed = std::move(found->second);
          parked.erase(found);
        } else {
          removed = entry.node->copy(nullptr, &copies);
        }
        SettingsNode* next = entry.next != nullptr ? copies.at(entry.next) : nullptr;
        copies.at(entry.parent)->link(*removed.release(), next);
        break;
      }
      case Entry::Kind::kExchanged: {
        std::unique_ptr<SettingsNode>& held = heldCopies[entry.held.get()];
        if (!held) held = entry.held->copy(nullptr, &copies);
        SettingsNode* const node = copies.at(entry.node);
        node->swapContent(*held);
        // Earlier entries name nodes of the content that came back, as children of `node`.
        for (SettingsNode* child = node->first_; child != nullptr; child = child->next_) {
          child->parent_ = node;
        }
        break;
      }
    }
  }
  return state;
}

}  // namespace refhost
