// The dialog's filter from the scripts' form.
#pragma once

#include "host/loom_base.h"

namespace spindle::win32 {

// The scripts separate the filter's parts with ';' ("HSP (*.hsp);*.hsp;;"); the dialog
// wants each part ended by a terminator and the list by an empty part. A trailing run of
// separators closes the list, so "A;*.a;;" and "A;*.a" give the same filter. "" stays
// "" (no filter).
Loom::wstring DialogFilter(const Loom::wstring& scriptFilter);

}  // namespace spindle::win32
