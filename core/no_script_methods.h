// Base of the registered objects that offer scripts no methods: every call is
// answered false and touches nothing.
#pragma once

#include "host/xclass.h"

class NoScriptMethods : public xClass {
 public:
  bool call(const char*, int, xarg_entry*, xarg_entry*) override { return false; }
};
