// Reading the value field of an argument record, kind by kind.
//
// The host passes integers inline in the low half of the value field; only the Math
// object reads kind-1 and kind-5 records as addresses (IntegerAt, FloatAt).
#pragma once

#include <bit>
#include <cstdint>

#include "host/xclass.h"

namespace spindle {

inline std::int32_t InlineInteger(const xarg_entry& record) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(record.value));
}

inline double InlineDouble(const xarg_entry& record) { return std::bit_cast<double>(record.value); }

template <class T>
T* PointerIn(const xarg_entry& record) {
  return reinterpret_cast<T*>(static_cast<std::uintptr_t>(record.value));
}

inline const char* StringIn(const xarg_entry& record) { return PointerIn<const char>(record); }
inline std::int32_t IntegerAt(const xarg_entry& record) { return *PointerIn<std::int32_t>(record); }
inline float FloatAt(const xarg_entry& record) { return *PointerIn<float>(record); }

}  // namespace spindle
