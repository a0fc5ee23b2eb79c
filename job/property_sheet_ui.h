// "xpropsheet" (xPropertySheetUI): The property sheet's OK, Cancel and Help handling. It has no
// script methods in this library: every call is answered false.
#pragma once

#include "core/no_script_methods.h"

class xPropertySheetUI final : public NoScriptMethods {};
