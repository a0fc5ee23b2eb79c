// The one dispatcher behind every script object's `call`.
//
// Each object declares its methods as a table of rows, in the order its scripts' calls
// are to be tested: the method name, the exact or minimum argument count, the kinds of
// the arguments it types, and the handler. Dispatch tests the rows in order and runs the
// first whose name (whole, case-sensitive), count and typed kinds all match; a name whose
// count or kinds do not match is passed over like an unknown one. When no row matches,
// the object's own answer for unmatched calls is returned and nothing is touched; a
// diagnostics hook set by the host is then told why (core/diagnostics.h).
//
// Before a handler runs, every typed document and element argument is wrapped in a
// SmartPtr (one reference each), held by CallArgs; they are given back when the call
// ends, on every path, exceptions included. Handlers never re-check what the row says.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "core/diagnostics.h"
#include "host/codes.h"
#include "host/xclass.h"
#include "host/xul.h"

namespace spindle {

using DocPtr = Loom::SmartPtr<Loom::XUL::xXULDoc>;
using ElemPtr = Loom::SmartPtr<Loom::XUL::xXULElem>;

enum class Count : std::uint8_t { kExactly, kAtLeast };

inline constexpr int kMaxTypedArgs = 6;
// A position the method reads itself: any kind is accepted there.
inline constexpr std::uint32_t kAnyKind = 0;
// A position the method reads itself as a number of any number kind: matched like
// kAnyKind, and named "number" when a call is explained.
inline constexpr std::uint32_t kAnyNumber = 0xFFFFFFFF;
using Kinds = std::array<std::uint32_t, kMaxTypedArgs>;

struct Signature {
  const char* name;
  Count count;
  int argc;     // exact count, or the minimum with Count::kAtLeast
  Kinds kinds;  // per position; positions past the list are kAnyKind
};

// Whether `record` is of the kind a row wants at its position. A kind-3 record must hold
// a string (a null pointer is no string).
bool KindMatches(std::uint32_t wanted, const xarg_entry& record);

// Whether a call matches: the whole name, the count, and the kind of every typed
// position. A kind-3 record must hold a string (a null pointer is no string).
bool Matches(const Signature& signature, const char* method, int argc, const xarg_entry* args);

// The arguments of one matched call, with the references of its typed documents and
// elements. Lives for the duration of the handler.
class CallArgs {
 public:
  CallArgs(int argc, const xarg_entry* args, const Kinds& kinds);
  CallArgs(const CallArgs&) = delete;
  CallArgs& operator=(const CallArgs&) = delete;

  int count() const { return argc_; }
  const xarg_entry& record(int index) const { return args_[index]; }
  // A typed document or element argument (null when the record held none).
  const DocPtr& doc(int index) const { return docs_[index]; }
  const ElemPtr& elem(int index) const { return elems_[index]; }
  // A kind-3 argument's UTF-8 text.
  const char* str(int index) const;
  // Whether an untyped position holds a string record.
  bool isString(int index) const;
  // A kind-1 argument's inline integer.
  std::int32_t integer(int index) const;

 private:
  int argc_;
  const xarg_entry* args_;
  std::array<DocPtr, kMaxTypedArgs> docs_;
  std::array<ElemPtr, kMaxTypedArgs> elems_;
};

template <class Object>
struct Method {
  Signature signature;
  bool (Object::*run)(CallArgs& args);
};

template <class Object>
bool Dispatch(Object& object, std::span<const Method<Object>> methods, bool unmatchedAnswer,
              const char* method, int argc, xarg_entry* args) {
  for (const Method<Object>& row : methods) {
    if (!Matches(row.signature, method, argc, args)) continue;
    CallArgs call(argc, args, row.signature.kinds);
    return (object.*row.run)(call);
  }
  if (g_diagnosticsHook != nullptr) [[unlikely]] {
    const SignatureRows rows{methods.data(), methods.size(),
                             [](const void* table, std::size_t index) -> const Signature& {
                               return static_cast<const Method<Object>*>(table)[index].signature;
                             }};
    ReportUnmatched(RegisteredName(&object), rows, method, argc, args);
  }
  return unmatchedAnswer;
}

}  // namespace spindle
