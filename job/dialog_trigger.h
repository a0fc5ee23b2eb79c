// The body the overwrite and delete confirmation dialogs share: showing, in the dialog,
// the text that made an ancestor page ask for confirmation.
#pragma once

#include <string_view>

#include "core/dispatch.h"

namespace spindle::job_internal {

// Copies the value of `sourceId` in the document `levelsUp` owners above `dialog` (1 for
// its parent) to the value of `targetId` in `dialog`. Nothing when that ancestor or
// either element is missing.
void CopyTriggerText(const DocPtr& dialog, int levelsUp, std::u16string_view sourceId,
                     std::u16string_view targetId);

}  // namespace spindle::job_internal
