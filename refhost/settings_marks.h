// mark / keep / revert of settings nodes.
//
// Marks are kept by the path of keys from the root to the marked node, so a mark outlives
// a reload: a branch marked before loadSettings goes back to its marked state when the
// branch of the same path is reverted after it (the factory reset relies on this). A
// second mark of a path replaces the first; keep and revert drop it; a revert of a path
// without a mark changes nothing. Marks of different paths (nested ones too) are
// independent of each other.
//
// While the marked node stays in the tree, its mark is a journal of how to undo each
// change made in its subtree since: a value set (the old value), a node added, a node
// removed (the node itself, with its subtree, and its place), a node's whole content
// exchanged, as a reload does (the content that left, kept whole). Revert undoes the journal
// backwards, which restores the exact state including order, and keep drops it; both
// cost what changed since the mark, not the size of the tree. When the marked node
// itself leaves the tree (it or an ancestor is removed, or the tree is reloaded), the
// journal is turned into a snapshot of the state at the mark, and a revert of the path
// replaces the content of the node then found there by it: references to its
// descendants taken before such a revert are invalid after it (the node stays valid).
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "host/loom_base.h"

namespace refhost {

class SettingsNode;

class SettingsMarks {
 public:
  SettingsMarks();
  // Drops every mark (and the removed nodes their journals hold).
  ~SettingsMarks();
  SettingsMarks(const SettingsMarks&) = delete;
  SettingsMarks& operator=(const SettingsMarks&) = delete;

  void mark(SettingsNode& node);
  void keep(SettingsNode& node);
  void revert(SettingsNode& node);
  // Whether any marked node is in the tree (so its changes are recorded).
  bool journaling() const { return journaling_ > 0; }

  // Told by the node primitives before or after each change.
  void recordValue(SettingsNode& node);
  void recordAdded(SettingsNode& child);
  // Before `child` leaves the tree: marks of nodes in its subtree become snapshots.
  void beforeRemoval(SettingsNode& child);
  // After `child` was unlinked from `parent`, where it stood before `next`.
  void recordRemoved(SettingsNode& parent, SettingsNode& child, SettingsNode* next);
  // After `node` exchanged its content with `held`'s: marks of nodes in the content that
  // left become snapshots.
  void recordExchange(SettingsNode& node, const std::shared_ptr<SettingsNode>& held);

 private:
  struct Entry;
  struct Mark;
  using Path = std::vector<Loom::string>;

  // The journals of the marks whose node is `node` or one of its ancestors.
  std::vector<std::vector<Entry>*> journalsCovering(const SettingsNode& node);
  void drop(Mark& mark);
  // Turns the marks of nodes within `top` (`top` itself only when `withTop`) into
  // snapshots, as their nodes leave the tree.
  void snapshotMarksWithin(const SettingsNode& top, bool withTop);
  static std::unique_ptr<SettingsNode> stateAtMark(const Mark& mark);

  std::map<Path, Mark> marks_;
  int journaling_ = 0;  // marks whose node is in the tree
};

}  // namespace refhost
