// Building a settings tree from a stored document, for every reader of one (a file's text,
// pugixml's tree, the host's DOM).
//
// A build appends each item to its parent's list in document order, without looking its
// key up, and makes its nodes in blocks of memory it allocates a few at a time; finish()
// then indexes every node's children in one pass per node list. That pass merges items
// of the same key under one parent the way a stored file means them: the first one keeps
// its place, the later value wins, and the children of all of them follow one another in
// document order (and merge in turn). A tree of N keys so costs a few allocations and one
// index insertion per key, fetched ahead of time, rather than an allocation and a lookup
// per key; and its nodes lie in memory in the order a walk of the tree visits them.
//
// A node made in a block is deleted like any other (SettingsNode's operator delete); the
// block is freed with its last node, so a tree never holds more memory for its nodes than
// it took when it was read, however many of them are removed since.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "host/loom_base.h"

namespace refhost {

class SettingsNode;

// Storage for nodes made together by one build.
class SettingsNodeBlock {
 public:
  // A block for `capacity` nodes, held by its maker until it lets go.
  static SettingsNodeBlock* Make(std::size_t capacity);
  // Storage for one more node, which holds the block until it is deleted; null when full.
  void* take();
  // One holder (a node, or the maker) lets go; the last one frees the block.
  void release();

 private:
  explicit SettingsNodeBlock(std::size_t capacity) : capacity_(capacity) {}

  std::size_t holds_ = 1;
  std::size_t used_ = 0;
  std::size_t capacity_;
};

class SettingsBuild {
 public:
  // Builds into `root`, which must be empty. Its nodes belong to the root's tree, but no
  // change of theirs is recorded or told.
  explicit SettingsBuild(SettingsNode& root);
  ~SettingsBuild();
  SettingsBuild(const SettingsBuild&) = delete;
  SettingsBuild& operator=(const SettingsBuild&) = delete;

  // Sets the root's value, telling nobody: a build is not a change until it is done.
  void setValue(std::string_view value);
  // Appends an item last under `parent`, the root or a node this build appended.
  SettingsNode& append(SettingsNode& parent, std::string_view key, std::string_view value);
  // Indexes the children of every node, merging items of the same key; call once, after
  // the last append. Until then the tree may only be deleted or abandoned.
  void finish();
  // Empties the root again: its value and everything appended.
  void abandon();

 private:
  static void merge(SettingsNode& parent, SettingsNode& later, SettingsNode& kept,
                    std::vector<SettingsNode*>& pending);

  SettingsNode& root_;
  SettingsNodeBlock* block_ = nullptr;
  std::size_t nextCapacity_;
};

}  // namespace refhost
