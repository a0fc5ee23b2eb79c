// "finishingTab" (xFinishingTab): The finishing tab. It has no script methods in this library:
// every call is answered false.
#pragma once

#include "core/no_script_methods.h"

class xFinishingTab final : public NoScriptMethods {};
