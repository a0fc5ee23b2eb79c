#include "refhost/args.h"

#include <bit>
#include <cstring>

#include "host/codes.h"

namespace refhost {
namespace {

std::uint64_t AddressOf(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

}  // namespace

Args& Args::push(std::uint32_t kind, std::uint64_t value) {
  xarg_entry& record = records_.emplace_back();
  record.kind = kind;
  record.value = value;
  record.extra = 0;
  return *this;
}

Args& Args::document(Loom::XUL::xXULDoc* doc) { return push(Loom::kArgDocument, AddressOf(doc)); }
Args& Args::element(Loom::XUL::xXULElem* elem) { return push(Loom::kArgElement, AddressOf(elem)); }

Args& Args::text(std::string utf8) {
  return push(Loom::kArgString, AddressOf(texts_.emplace_back(std::move(utf8)).c_str()));
}

Args& Args::integer(std::int32_t value) {
  // The value sits in the low half; the high half stays zero.
  return push(Loom::kArgInteger, static_cast<std::uint32_t>(value));
}

Args& Args::integerRef(std::int32_t value) {
  return push(Loom::kArgInteger, AddressOf(&integers_.emplace_back(value)));
}

Args& Args::floatRef(float value) {
  return push(Loom::kArgFloat, AddressOf(&floats_.emplace_back(value)));
}

Args& Args::real(double value) { return push(Loom::kArgDouble, std::bit_cast<std::uint64_t>(value)); }

Args& Args::raw(std::uint32_t kind, std::uint64_t value) { return push(kind, value); }

}  // namespace refhost
