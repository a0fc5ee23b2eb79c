// "posterPrint" (xPosterPrint): Poster printing. It has no script methods in this library: every
// call is answered false.
#pragma once

#include "core/no_script_methods.h"

class xPosterPrint final : public NoScriptMethods {};
