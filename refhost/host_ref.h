// HostRef: the reference host's own structural hold on a reference-counted object.
//
// A tree holding its nodes, a document holding its root, a settings tree holding its
// backing store: these keep the object alive but are not references handed to the
// library, so they go through RefCount::hostHold / hostRelease and never show in
// refhost::heldReferences(). Whatever the host hands out is a SmartPtr, which counts.
#pragma once

#include <utility>

#include "host/loom_base.h"

namespace refhost {

namespace internal {

// hostHold / hostRelease are protected in RefCount; the host reaches them on any
// RefCount through member pointers taken in a class derived from it.
struct StructuralAccess : Loom::RefCount {
  static void Hold(const Loom::RefCount* object) noexcept {
    (object->*(&StructuralAccess::hostHold))();
  }
  static void Release(const Loom::RefCount* object) noexcept {
    (object->*(&StructuralAccess::hostRelease))();
  }
};

}  // namespace internal

// Owns one structural hold on a T (or nothing). Movable, not copyable: a second holder
// takes its own hold explicitly with HostRef(get()).
template <class T>
class HostRef {
 public:
  HostRef() noexcept = default;
  explicit HostRef(T* object) noexcept : object_(object) {
    if (object_ != nullptr) internal::StructuralAccess::Hold(object_);
  }
  HostRef(HostRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  HostRef& operator=(HostRef&& other) noexcept {
    HostRef(std::move(other)).swap(*this);
    return *this;
  }
  HostRef(const HostRef&) = delete;
  HostRef& operator=(const HostRef&) = delete;
  ~HostRef() { reset(); }

  void reset() noexcept {
    if (T* object = std::exchange(object_, nullptr)) internal::StructuralAccess::Release(object);
  }
  void swap(HostRef& other) noexcept { std::swap(object_, other.object_); }

  T* get() const noexcept { return object_; }
  T* operator->() const noexcept { return object_; }
  T& operator*() const noexcept { return *object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  // A counted reference for handing out.
  Loom::SmartPtr<T> share() const noexcept { return Loom::SmartPtr<T>(object_); }

 private:
  T* object_ = nullptr;
};

}  // namespace refhost
