#include "refhost/settings_build.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "refhost/settings_tree.h"

namespace refhost {
namespace {

// Blocks start small, for the many files of a few keys, and double up to a size that
// makes their allocations rare but keeps what one surviving node can hold bounded.
constexpr std::size_t kFirstBlockNodes = 16;
constexpr std::size_t kLargestBlockNodes = 1024;

// How many children ahead of the one being indexed have their slot fetched: enough to
// overlap the cache misses of a table far larger than the cache.
constexpr std::size_t kFetchAhead = 8;

std::byte* NodeStorage(SettingsNodeBlock* block) {
  return reinterpret_cast<std::byte*>(block) + sizeof(SettingsNodeBlock);
}

}  // namespace

static_assert(sizeof(SettingsNodeBlock) % alignof(SettingsNode) == 0);

SettingsNodeBlock* SettingsNodeBlock::Make(std::size_t capacity) {
  void* storage = ::operator new(sizeof(SettingsNodeBlock) + capacity * sizeof(SettingsNode));
  return new (storage) SettingsNodeBlock(capacity);
}

void* SettingsNodeBlock::take() {
  if (used_ == capacity_) return nullptr;
  ++holds_;
  return NodeStorage(this) + sizeof(SettingsNode) * used_++;
}

void SettingsNodeBlock::release() {
  if (--holds_ == 0) ::operator delete(this);
}

SettingsBuild::SettingsBuild(SettingsNode& root) : root_(root), nextCapacity_(kFirstBlockNodes) {}

SettingsBuild::~SettingsBuild() {
  if (block_ != nullptr) block_->release();
}

void SettingsBuild::setValue(std::string_view value) { root_.value_.assign(value); }

SettingsNode& SettingsBuild::append(SettingsNode& parent, std::string_view key,
                                    std::string_view value) {
  void* storage = block_ != nullptr ? block_->take() : nullptr;
  if (storage == nullptr) {
    if (block_ != nullptr) block_->release();
    block_ = SettingsNodeBlock::Make(nextCapacity_);
    nextCapacity_ = std::min(2 * nextCapacity_, kLargestBlockNodes);
    storage = block_->take();
  }
  auto* node = new (storage) SettingsNode(parent.tree_, key);
  node->block_ = block_;
  node->value_.assign(value);
  node->parent_ = &parent;
  node->prev_ = parent.last_;
  (parent.last_ != nullptr ? parent.last_->next_ : parent.first_) = node;
  parent.last_ = node;
  ++parent.nextOrder_;
  return *node;
}

// Moves the children of `later`, an item of the same key as `kept` further down the same
// list, behind those of `kept`, which takes its value; `later` is then unlinked and gone.
// Neither is indexed yet, so their nextOrder_ still counts their children.
void SettingsBuild::merge(SettingsNode& parent, SettingsNode& later, SettingsNode& kept,
                          std::vector<SettingsNode*>& pending) {
  kept.value_ = std::move(later.value_);
  if (later.first_ != nullptr) {
    // A node that had no children was not queued for indexing when its list was indexed.
    if (kept.first_ == nullptr) pending.push_back(&kept);
    for (SettingsNode* child = later.first_; child != nullptr; child = child->next_) {
      child->parent_ = &kept;
    }
    later.first_->prev_ = kept.last_;
    (kept.last_ != nullptr ? kept.last_->next_ : kept.first_) = later.first_;
    kept.last_ = std::exchange(later.last_, nullptr);
    later.first_ = nullptr;
    kept.nextOrder_ += std::exchange(later.nextOrder_, 0);
  }
  (later.prev_ != nullptr ? later.prev_->next_ : parent.first_) = later.next_;
  (later.next_ != nullptr ? later.next_->prev_ : parent.last_) = later.prev_;
  delete &later;
}

void SettingsBuild::finish() {
  // First in, first out: the lists are indexed in the order their nodes were made, which
  // is the order they lie in memory.
  std::vector<SettingsNode*> pending;
  if (root_.first_ != nullptr) pending.push_back(&root_);
  for (std::size_t taken = 0; taken < pending.size(); ++taken) {
    SettingsNode& parent = *pending[taken];
    SettingsIndex& index = parent.children().index;
    index.reserve(parent.nextOrder_);
    parent.nextOrder_ = 0;
    // The hashes of the children from `ahead` back, kFetchAhead of them, whose slots are
    // on their way into the cache.
    std::array<std::size_t, kFetchAhead> hashes{};
    SettingsNode* ahead = parent.first_;
    const auto fetch = [&](std::size_t position) {
      const std::size_t hash = SettingsIndex::Hash(ahead->key_);
      index.prefetch(hash);
      hashes[position % kFetchAhead] = hash;
      ahead = ahead->next_;
    };
    for (std::size_t position = 0; position < kFetchAhead && ahead != nullptr; ++position) {
      fetch(position);
    }
    std::size_t position = 0;
    for (SettingsNode* child = parent.first_; child != nullptr; ++position) {
      SettingsNode* const next = child->next_;
      const std::size_t hash = hashes[position % kFetchAhead];
      if (ahead != nullptr) fetch(position + kFetchAhead);
      if (SettingsNode* kept = index.insertUnlessHeld(child, hash)) {
        merge(parent, *child, *kept, pending);
      } else {
        child->order_ = parent.nextOrder_++;
        if (child->first_ != nullptr) pending.push_back(child);
      }
      child = next;
    }
  }
}

void SettingsBuild::abandon() {
  root_.deleteChildren();
  root_.value_.clear();
  root_.nextOrder_ = 0;
}

}  // namespace refhost
