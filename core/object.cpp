#include "core/object.h"

#include <cstdio>

using spindle::Count;

const spindle::Method<xObject> xObject::kMethods[] = {
    {{"abc", Count::kExactly, 1, {Loom::kArgInteger}}, &xObject::Abc},
};

bool xObject::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  // A test object: it answers true whatever is called, so a host can probe the
  // protocol without knowing the method table.
  spindle::Dispatch<xObject>(*this, kMethods, true, method, argc, args);
  return true;
}

bool xObject::Abc(spindle::CallArgs& args) {
  std::printf("value %d\n", args.integer(0));
  return true;
}
