// Print templates: the six template buttons of the property sheet, each linked to a stored
// profile by name through the user settings branch "TEMPLATE" (keys "TEMPLATE_BUTTON_1" to
// "TEMPLATE_BUTTON_6", each holding a profile name or "").
//
// Exported for the host and sibling driver libraries; the profiles object calls
// updateTemplates when it deletes a profile, so no button keeps pointing at it.
#pragma once

#include "core/export.h"
#include "host/loom_base.h"
#include "host/settings.h"
#include "host/xul.h"

// When "TEMPLATE"[buttonKey] of `settings` equals `profileName` exactly, empties it and
// answers true; otherwise answers false with the value unchanged. Reading the key creates
// it (empty) when it was missing.
extern "C" SPINDLE_EXPORT bool removeTemplate(const Loom::string& profileName,
                                              const Loom::string& buttonKey,
                                              Loom::Services::PersistentSettings& settings);

// Clears `profileName` from every template button of the user settings tree of `doc`'s
// window (removeTemplate for buttons 1 to 6, in order). Nothing for a null document. The
// tree is not saved: the caller saves it with its own change.
extern "C" SPINDLE_EXPORT void updateTemplates(const Loom::string& profileName,
                                               Loom::SmartPtr<Loom::XUL::xXULDoc> doc);

// When `buttonId` is one of the twelve apply and edit button ids (exact), writes its
// button's label prefix ("tmpl_lbl_but4_" for "but_Tmplt9in1") into `prefix` and answers
// true; otherwise leaves `prefix` as it is and answers false.
extern "C" SPINDLE_EXPORT bool getTmplLblPrefix(const Loom::wstring& buttonId,
                                                Loom::wstring& prefix);
