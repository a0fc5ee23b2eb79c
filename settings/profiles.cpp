#include "settings/profiles.h"

#include "core/dispatch.h"

bool xProfiles::call(const char* method, int argc, xarg_entry* args, xarg_entry*) {
  return spindle::Dispatch<xProfiles>(*this, {}, false, method, argc, args);
}
