// How the runner writes a file dialog the library showed (refhost/file_dialogs.h), in a
// call's list of changes and in the expectations that look at it.
#pragma once

#include <string>

#include "refhost/file_dialogs.h"

namespace loomsim {

// `save flags 0x1802 title "Export" filter "HSP (*.hsp);*.hsp;;" -> cancelled`
std::string FileDialogText(const refhost::FileDialogRecord& dialog);

}  // namespace loomsim
