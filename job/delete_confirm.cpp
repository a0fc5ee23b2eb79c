#include "job/delete_confirm.h"

bool xDeleteConfirm::call(const char*, int, xarg_entry*, xarg_entry*) {
  // Dialog scripts never look at the answer: every call is answered true.
  return true;
}
