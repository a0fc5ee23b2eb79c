#include "core/dispatch.h"

#include <cstring>

#include "core/arg_record.h"

namespace spindle {

bool KindMatches(std::uint32_t wanted, const xarg_entry& record) {
  if (wanted == kAnyKind || wanted == kAnyNumber) return true;
  if (record.kind != wanted) return false;
  return wanted != Loom::kArgString || StringIn(record) != nullptr;
}

bool Matches(const Signature& signature, const char* method, int argc, const xarg_entry* args) {
  if (method == nullptr || std::strcmp(method, signature.name) != 0) return false;
  const bool countMatches =
      signature.count == Count::kExactly ? argc == signature.argc : argc >= signature.argc;
  if (!countMatches || (argc > 0 && args == nullptr)) return false;
  for (int i = 0; i < argc && i < kMaxTypedArgs; ++i) {
    if (!KindMatches(signature.kinds[i], args[i])) return false;
  }
  return true;
}

CallArgs::CallArgs(int argc, const xarg_entry* args, const Kinds& kinds)
    : argc_(argc), args_(args) {
  for (int i = 0; i < argc && i < kMaxTypedArgs; ++i) {
    if (kinds[i] == Loom::kArgDocument) {
      docs_[i] = DocPtr(PointerIn<Loom::XUL::xXULDoc>(args[i]));
    } else if (kinds[i] == Loom::kArgElement) {
      elems_[i] = ElemPtr(PointerIn<Loom::XUL::xXULElem>(args[i]));
    }
  }
}

const char* CallArgs::str(int index) const { return StringIn(args_[index]); }

bool CallArgs::isString(int index) const {
  return index < argc_ && args_[index].kind == Loom::kArgString && str(index) != nullptr;
}

std::int32_t CallArgs::integer(int index) const { return InlineInteger(args_[index]); }

}  // namespace spindle
