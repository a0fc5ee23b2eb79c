// The host framework's memory and lifetime primitives.
//
// Everything the library allocates on the host's behalf goes through the host: objects
// derived from Loom::Base use its operator new/delete, strings and containers use
// Loom::Allocator. Host objects that are shared between host and library (documents,
// elements, stores, ...) are reference counted through Loom::RefCount and held in
// Loom::SmartPtr, which takes a reference when it is made and gives it back when it dies.
// The reference host counts all of these, so a leak shows up in its accounting.
#pragma once

#include <cstddef>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace Loom {

// Raw storage from the host. allocate_impl returns null when the host is out of memory.
void* allocate_impl(std::size_t bytes) noexcept;
void deallocate_impl(void* storage) noexcept;

// The standard allocator interface over allocate_impl / deallocate_impl.
template <class T>
struct Allocator {
  using value_type = T;

  Allocator() noexcept = default;
  template <class U>
  Allocator(const Allocator<U>&) noexcept {}

  T* allocate(std::size_t n) {
    void* storage = allocate_impl(n * sizeof(T));
    if (storage == nullptr) throw std::bad_alloc();
    return static_cast<T*>(storage);
  }
  void deallocate(T* p, std::size_t) noexcept { deallocate_impl(p); }

  template <class U>
  bool operator==(const Allocator<U>&) const noexcept {
    return true;
  }
};

// Narrow strings hold UTF-8: script strings, settings keys and values, keyword names,
// property keys.
using string = std::basic_string<char, std::char_traits<char>, Allocator<char>>;

// Wide strings hold UTF-16 code units on every platform (wchar_t is 32 bits outside
// Windows, so the host's wide character is char16_t): element ids, attribute names and
// values, file names and paths. Literals are written u"...".
using wchar = char16_t;
using wstring = std::basic_string<wchar, std::char_traits<wchar>, Allocator<wchar>>;

template <class T>
using vector = std::vector<T, Allocator<T>>;

// Base of every object the host allocates for the library (the script objects among
// them). operator new returns null when the host cannot allocate; a new-expression then
// yields null and constructs nothing.
class Base {
 public:
  static void* operator new(std::size_t size) noexcept;
  static void operator delete(void* storage) noexcept;
};

// An object shared by reference count. The host frees it when the last reference goes
// and the host itself no longer keeps it (an element removed from its tree lives on
// while someone holds it).
class RefCount : public Base {
 public:
  void addRef() const noexcept;
  void relRef() const noexcept;

  RefCount(const RefCount&) = delete;
  RefCount& operator=(const RefCount&) = delete;

 protected:
  RefCount() noexcept;
  virtual ~RefCount();

  // The host's own structural references (a tree holding its nodes, a document holding
  // its window). They keep the object alive but are not references handed to anyone,
  // so they do not show in the host's accounting of held references.
  void hostHold() const noexcept;
  void hostRelease() const noexcept;

 private:
  mutable long refs_;
};

// Holds one reference to a RefCount object, or nothing.
template <class T>
class SmartPtr {
 public:
  SmartPtr() noexcept = default;
  SmartPtr(std::nullptr_t) noexcept {}
  explicit SmartPtr(T* p) noexcept : p_(p) {
    if (p_ != nullptr) p_->addRef();
  }
  SmartPtr(const SmartPtr& other) noexcept : SmartPtr(other.p_) {}
  SmartPtr(SmartPtr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  SmartPtr(const SmartPtr<U>& other) noexcept : SmartPtr(other.get()) {}
  template <class U, class = std::enable_if_t<std::is_convertible_v<U*, T*>>>
  SmartPtr(SmartPtr<U>&& other) noexcept : p_(other.release()) {}
  ~SmartPtr() { reset(); }

  SmartPtr& operator=(SmartPtr other) noexcept {
    std::swap(p_, other.p_);
    return *this;
  }

  void reset() noexcept {
    if (T* p = std::exchange(p_, nullptr)) p->relRef();
  }
  // Gives up the reference without releasing it; the caller now owns it.
  T* release() noexcept { return std::exchange(p_, nullptr); }

  T* get() const noexcept { return p_; }
  T* operator->() const noexcept { return p_; }
  T& operator*() const noexcept { return *p_; }
  explicit operator bool() const noexcept { return p_ != nullptr; }

  friend bool operator==(const SmartPtr& a, const SmartPtr& b) noexcept { return a.p_ == b.p_; }
  friend bool operator==(const SmartPtr& a, std::nullptr_t) noexcept { return a.p_ == nullptr; }

 private:
  T* p_ = nullptr;
};

}  // namespace Loom
