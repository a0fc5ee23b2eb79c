// "obj" (xObject): the test object. Its one method, abc, prints its integer argument,
// so a host can check that calls reach the library at all.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xObject final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xObject> kMethods[];

  // abc(integer): prints "value N" and a newline to the standard output.
  bool Abc(spindle::CallArgs& args);
};
