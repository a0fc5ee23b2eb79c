// Settings branches carried inside stored documents: a branch of a settings tree turned
// into a DOM tree and back, and the image-quality branch that the image-quality plug-in
// (a script object of another library, "imgQuality") owns.
//
// A branch becomes <item key="K" value="V"> with one such child per child node, in order,
// the form of the host's settings files; reading it back makes the branch an exact copy.
#pragma once

#include "core/dispatch.h"
#include "host/dom.h"
#include "host/settings.h"

namespace spindle::settings_internal {

Loom::SmartPtr<Loom::Dom::Node> BranchToNode(Loom::Services::PersistentItem& branch);
// Makes `branch` hold exactly what `node` holds (its value and its children, in order).
void NodeToBranch(Loom::Dom::Node& node, Loom::Services::PersistentItem& branch);

// The image-quality settings of the plug-in that serves `doc` ("IMAGE_QUALITY" branch),
// asked of the script global "imgQuality" through its getSettingsObject; null when the
// page has no such object or it gives none. The plug-in owns the branch.
Loom::Services::PersistentItem* ImageQualitySettings(const DocPtr& doc);

}  // namespace spindle::settings_internal
