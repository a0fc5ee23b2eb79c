// "profiles" (xProfiles): Named user profiles: the profile list, writing a profile from the live
// document, applying, deleting and checking profiles, and the temporary profile.
#pragma once

#include "host/xclass.h"

class xProfiles final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};
