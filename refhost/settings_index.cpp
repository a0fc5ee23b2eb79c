#include "refhost/settings_index.h"

#include <bit>

#include "refhost/settings_tree.h"

namespace refhost {
namespace {

constexpr std::size_t kSmallestTable = 8;

}  // namespace

SettingsNode* SettingsIndex::find(std::string_view key) const {
  if (size_ == 0) return nullptr;
  const std::size_t hash = Hash(key);
  for (std::size_t at = slotOf(hash);; at = slotOf(at + 1)) {
    const Slot& slot = slots_[at];
    if (slot.node == nullptr) return nullptr;
    if (slot.hash == hash && std::string_view(slot.node->key()) == key) return slot.node;
  }
}

void SettingsIndex::insert(SettingsNode* node) { insertUnlessHeld(node, Hash(node->key())); }

SettingsNode* SettingsIndex::insertUnlessHeld(SettingsNode* node, std::size_t hash) {
  if (2 * (size_ + 1) > slots_.size()) rehash(std::max(kSmallestTable, 2 * slots_.size()));
  const std::string_view key = node->key();
  std::size_t at = slotOf(hash);
  for (; slots_[at].node != nullptr; at = slotOf(at + 1)) {
    const Slot& slot = slots_[at];
    if (slot.hash == hash && std::string_view(slot.node->key()) == key) return slot.node;
  }
  slots_[at] = Slot{hash, node};
  ++size_;
  return nullptr;
}

void SettingsIndex::erase(const SettingsNode* node) {
  if (size_ == 0) return;
  std::size_t hole = slotOf(Hash(node->key()));
  while (slots_[hole].node != node) {
    if (slots_[hole].node == nullptr) return;
    hole = slotOf(hole + 1);
  }
  // Backward shift: each slot of the run after the hole moves into it when the hole lies
  // between the slot's home and the slot itself, so every key stays reachable.
  for (std::size_t next = slotOf(hole + 1); slots_[next].node != nullptr; next = slotOf(next + 1)) {
    const std::size_t home = slotOf(slots_[next].hash);
    if (slotOf(next - home) >= slotOf(next - hole)) {
      slots_[hole] = slots_[next];
      hole = next;
    }
  }
  slots_[hole] = Slot();
  --size_;
}

void SettingsIndex::reserve(std::size_t count) {
  if (2 * count > slots_.size()) rehash(std::max(kSmallestTable, std::bit_ceil(2 * count)));
}

void SettingsIndex::place(std::size_t hash, SettingsNode* node) {
  std::size_t at = slotOf(hash);
  while (slots_[at].node != nullptr) at = slotOf(at + 1);
  slots_[at] = Slot{hash, node};
}

void SettingsIndex::rehash(std::size_t capacity) {
  std::vector<Slot> old(capacity);
  old.swap(slots_);
  for (const Slot& slot : old) {
    if (slot.node != nullptr) place(slot.hash, slot.node);
  }
}

}  // namespace refhost
