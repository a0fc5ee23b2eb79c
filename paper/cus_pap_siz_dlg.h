// "cuspapsizdlg" (xCusPapSizDlg): The custom paper size dialog (owner of the custom paper store
// "Zucustpap.xml"). It has no script methods in this library: every call is answered false.
#pragma once

#include "core/no_script_methods.h"

class xCusPapSizDlg final : public NoScriptMethods {};
