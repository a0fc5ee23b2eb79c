// The index of a settings node's children by key.
//
// Open addressing with linear probing over a power-of-two table of (hash, node) slots, at
// most half full: finding a key costs a short run of probes and one key comparison per
// hash that matches, and adding a child allocates nothing except when the table doubles.
// A removal shifts the following run back, so no tombstones pile up under churn.
//
// Keys are hashed inline, as a load hashes every key it reads: the key's bytes as 64-bit
// words (short keys as overlapping smaller loads), each word folded in by a
// multiplication, which maps different words to different products, and the sum run
// through splitmix64's finaliser, so that every byte of the key reaches the low bits by
// which the table is addressed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>
#include <vector>

namespace refhost {

class SettingsNode;

class SettingsIndex {
 public:
  // The hash the index files a key under.
  static std::size_t Hash(std::string_view key) {
    constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
    const char* const bytes = key.data();
    const std::size_t size = key.size();
    std::uint64_t hash = (size + 1) * kOdd;
    if (size >= 8) {
      // Whole words, then the last eight bytes, which overlap the last whole word.
      for (std::size_t at = 0; at + 8 < size; at += 8) hash = (hash ^ Load<8>(bytes + at)) * kOdd;
      hash = (hash ^ Load<8>(bytes + size - 8)) * kOdd;
    } else if (size >= 4) {
      hash = (hash ^ (Load<4>(bytes) << 32 | Load<4>(bytes + size - 4))) * kOdd;
    } else if (size > 0) {
      const auto byte = [bytes](std::size_t at) { return std::uint64_t(std::uint8_t(bytes[at])); };
      hash = (hash ^ (byte(0) << 16 | byte(size / 2) << 8 | byte(size - 1))) * kOdd;
    }
    hash ^= hash >> 30;
    hash *= 0xBF58476D1CE4E5B9;
    hash ^= hash >> 27;
    hash *= 0x94D049BB133111EB;
    return static_cast<std::size_t>(hash ^ (hash >> 31));
  }

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
  template <std::size_t kBytes>
  static std::uint64_t Load(const char* bytes) {
    std::conditional_t<kBytes == 8, std::uint64_t, std::uint32_t> word;
    std::memcpy(&word, bytes, kBytes);
    return word;
  }

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
