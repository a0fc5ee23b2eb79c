// The object base of every script-callable class and the argument record that carries
// one script value across the call boundary.
//
// The host calls xClass::call for every script statement `name.method(arg, ...)` with a
// counted array of xarg_entry records. The record's layout is part of the binary
// interface with the host and must never change: see the static_asserts below.
#pragma once

#include <cstddef>
#include <cstdint>

#include "host/loom_base.h"

struct xarg_entry {
  xarg_entry();   // host operation: an empty record (kind 0, value 0, extra 0)
  ~xarg_entry();  // host operation

  std::uint32_t kind;     // one of the argument kinds of host/codes.h
  std::uint32_t padding;  // unused
  std::uint64_t value;    // the value, or its address, as the kind says
  std::uint64_t extra;    // never read by the library; 0 in records the library fills
};

static_assert(sizeof(xarg_entry) == 24);
static_assert(offsetof(xarg_entry, kind) == 0);
static_assert(offsetof(xarg_entry, value) == 8);
static_assert(offsetof(xarg_entry, extra) == 16);

// Virtual slots, in order: the destructor, then call. Objects are allocated with
// Loom::Base::operator new and freed through the virtual destructor.
class xClass : public virtual Loom::Base {
 public:
  virtual ~xClass();  // host operation
  // Runs `method` with `argc` records; answers only success or failure. `result` is
  // written only by objects of other libraries that return a value in it.
  virtual bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) = 0;

 protected:
  xClass() = default;
};
