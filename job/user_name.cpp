#include "job/user_name.h"

bool xUserName::call(const char*, int, xarg_entry*, xarg_entry*) {
  // Scripts never look at the answer: every call is answered true.
  return true;
}
