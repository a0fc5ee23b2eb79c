#include "refhost/args.h"

#include <bit>
#include <cstring>

#include "host/codes.h"

namespace refhost {
namespace {

std::uint64_t AddressOf(const void* p) { return reinterpret_cast<std::uintptr_t>(p); }

}  // namespace

Args::Args(const Args& other)
    : records_(other.records_),
      texts_(other.texts_),
      integers_(other.integers_),
      floats_(other.floats_),
      slots_(other.slots_) {
  for (std::size_t i = 0; i < records_.size(); ++i) {
    if (slots_[i].storage != Storage::kInline) records_[i].value = addressOf(slots_[i]);
  }
}

Args& Args::operator=(const Args& other) {
  if (this != &other) *this = Args(other);
  return *this;
}

std::uint64_t Args::addressOf(const Slot& slot) const {
  switch (slot.storage) {
    case Storage::kText:
      return AddressOf(texts_[slot.index].c_str());
    case Storage::kInteger:
      return AddressOf(&integers_[slot.index]);
    case Storage::kFloat:
      return AddressOf(&floats_[slot.index]);
    case Storage::kInline:
      break;
  }
  return 0;
}

Args& Args::push(std::uint32_t kind, std::uint64_t value, Slot slot) {
  slots_.push_back(slot);
  xarg_entry& record = records_.emplace_back();
  record.kind = kind;
  record.value = value;
  record.extra = 0;
  return *this;
}

Args& Args::document(Loom::XUL::xXULDoc* doc) { return push(Loom::kArgDocument, AddressOf(doc)); }
Args& Args::element(Loom::XUL::xXULElem* elem) { return push(Loom::kArgElement, AddressOf(elem)); }

Args& Args::text(std::string utf8) {
  texts_.push_back(std::move(utf8));
  const Slot slot{Storage::kText, texts_.size() - 1};
  return push(Loom::kArgString, addressOf(slot), slot);
}

Args& Args::integer(std::int32_t value) {
  // The value sits in the low half; the high half stays zero.
  return push(Loom::kArgInteger, static_cast<std::uint32_t>(value));
}

Args& Args::integerRef(std::int32_t value) {
  integers_.push_back(value);
  const Slot slot{Storage::kInteger, integers_.size() - 1};
  return push(Loom::kArgInteger, addressOf(slot), slot);
}

Args& Args::floatRef(float value) {
  floats_.push_back(value);
  const Slot slot{Storage::kFloat, floats_.size() - 1};
  return push(Loom::kArgFloat, addressOf(slot), slot);
}

Args& Args::real(double value) {
  return push(Loom::kArgDouble, std::bit_cast<std::uint64_t>(value));
}

Args& Args::raw(std::uint32_t kind, std::uint64_t value) { return push(kind, value); }

}  // namespace refhost
