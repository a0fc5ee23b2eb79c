// The index of a settings node's children by key.
//
// Open addressing with linear probing over a power-of-two table of (hash, node) slots, at
// most half full: finding a key costs a short run of probes and one key comparison per
// hash that matches, and adding a child allocates nothing except when the table doubles.
// A removal shifts the following run back, so no tombstones pile up under churn.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace refhost {

class SettingsNode;

class SettingsIndex {
 public:
  // The hash the index files a key under.
  static std::size_t Hash(std::string_view key);

  SettingsNode* find(std::string_view key) const;
  // Adds `node`, whose key the index does not hold yet.
  void insert(SettingsNode* node);
  // Adds `node`, whose key has `hash`, unless the index holds a node of the same key:
  // that node is returned then, and the index is left as it was.
  SettingsNode* insertUnlessHeld(SettingsNode* node, std::size_t hash);
  // Asks the processor to fetch the slot where a key of `hash` is looked for, so that
  // a bulk insertion overlaps the cache misses of a large table. Only after reserve: the
  // table must not be empty. (No test of that here: GCC drops a prefetch behind one.)
  void prefetch(std::size_t hash) const { __builtin_prefetch(&slots_[slotOf(hash)]); }
  void erase(const SettingsNode* node);
  // Makes room for `count` keys, so that adding them never rehashes.
  void reserve(std::size_t count);
  std::size_t size() const { return size_; }

 private:
  struct Slot {
    std::size_t hash = 0;
    SettingsNode* node = nullptr;  // null: empty
  };

  std::size_t slotOf(std::size_t hash) const { return hash & (slots_.size() - 1); }
  void place(std::size_t hash, SettingsNode* node);
  void rehash(std::size_t capacity);

  std::vector<Slot> slots_;
  std::size_t size_ = 0;
};

}  // namespace refhost
