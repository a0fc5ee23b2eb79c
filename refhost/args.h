// Builds argument records the way the host does, for the runner, tests and benchmarks.
//
// Values that a record only points at (strings, and the integers and floats the Math
// object reads through an address) are owned by the builder and live as long as it.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

#include "host/xclass.h"

namespace Loom::XUL {
class xXULDoc;
class xXULElem;
}  // namespace Loom::XUL

namespace refhost {

class Args {
 public:
  Args& document(Loom::XUL::xXULDoc* doc);   // kind 7
  Args& element(Loom::XUL::xXULElem* elem);  // kind 8
  Args& text(std::string utf8);              // kind 3
  Args& integer(std::int32_t value);         // kind 1, inline in the low half
  Args& integerRef(std::int32_t value);      // kind 1, the address of the value
  Args& floatRef(float value);               // kind 5, the address of the value
  Args& real(double value);                  // kind 6, inline
  Args& raw(std::uint32_t kind, std::uint64_t value = 0);

  Args() = default;
  // A copy owns copies of the values and points its records at them.
  Args(const Args& other);
  Args& operator=(const Args& other);
  Args(Args&&) = default;
  Args& operator=(Args&&) = default;

  int count() const { return static_cast<int>(records_.size()); }
  xarg_entry* records() { return records_.empty() ? nullptr : records_.data(); }

 private:
  // Where a record's value lives: in the record, or in one of the owned stores.
  enum class Storage { kInline, kText, kInteger, kFloat };
  struct Slot {
    Storage storage;
    std::size_t index;
  };

  Args& push(std::uint32_t kind, std::uint64_t value, Slot slot = {Storage::kInline, 0});
  std::uint64_t addressOf(const Slot& slot) const;

  std::vector<xarg_entry> records_;
  // Deques keep the addresses of earlier values stable as more are added.
  std::deque<std::string> texts_;
  std::deque<std::int32_t> integers_;
  std::deque<float> floats_;
  std::vector<Slot> slots_;  // one per record
};

}  // namespace refhost
