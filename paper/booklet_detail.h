// "bookletDetail" (xBookletDetail): The booklet details. It has no script methods in this library:
// every call is answered false.
#pragma once

#include "core/no_script_methods.h"

class xBookletDetail final : public NoScriptMethods {};
