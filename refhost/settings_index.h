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
  SettingsNode* find(std::string_view key) const;
  // Adds `node`, whose key the index does not hold yet.
  void insert(SettingsNode* node);
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
