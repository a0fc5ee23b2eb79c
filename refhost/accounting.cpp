// Counted implementations of the host's memory and lifetime primitives.
#include "refhost/accounting.h"

#include <cstdlib>
#include <new>
#include <utility>

#include "host/loom_base.h"
#include "host/xclass.h"

namespace refhost {
namespace {

// Plain integers and a never-destroyed log: the library's objects are destroyed from
// its exit routine, which may run after this library's own static destructors.
long g_held_references = 0;
long g_live_base_objects = 0;
long g_live_allocations = 0;
bool g_fail_next_base_allocation = false;

std::vector<const xClass*>& DestroyedLog() {
  static auto* log = new std::vector<const xClass*>();
  return *log;
}

}  // namespace

long heldReferences() { return g_held_references; }
long liveBaseObjects() { return g_live_base_objects; }
long liveAllocations() { return g_live_allocations; }
const std::vector<const xClass*>& destroyedObjects() { return DestroyedLog(); }
void failNextBaseAllocation() { g_fail_next_base_allocation = true; }

}  // namespace refhost

namespace Loom {

void* allocate_impl(std::size_t bytes) noexcept {
  void* storage = std::malloc(bytes == 0 ? 1 : bytes);
  if (storage != nullptr) ++refhost::g_live_allocations;
  return storage;
}

void deallocate_impl(void* storage) noexcept {
  if (storage == nullptr) return;
  --refhost::g_live_allocations;
  std::free(storage);
}

void* Base::operator new(std::size_t size) noexcept {
  if (std::exchange(refhost::g_fail_next_base_allocation, false)) return nullptr;
  void* storage = std::malloc(size);
  if (storage != nullptr) ++refhost::g_live_base_objects;
  return storage;
}

void Base::operator delete(void* storage) noexcept {
  if (storage == nullptr) return;
  --refhost::g_live_base_objects;
  std::free(storage);
}

RefCount::RefCount() noexcept : refs_(0) {}
RefCount::~RefCount() = default;

void RefCount::addRef() const noexcept {
  ++refs_;
  ++refhost::g_held_references;
}

void RefCount::relRef() const noexcept {
  --refhost::g_held_references;
  if (--refs_ == 0) delete this;
}

void RefCount::hostHold() const noexcept { ++refs_; }

void RefCount::hostRelease() const noexcept {
  if (--refs_ == 0) delete this;
}

}  // namespace Loom

xarg_entry::xarg_entry() : kind(0), padding(0), value(0), extra(0) {}
xarg_entry::~xarg_entry() = default;

xClass::~xClass() { refhost::DestroyedLog().push_back(this); }
