#include "job/dialog_trigger.h"

#include "core/elements.h"

namespace spindle::job_internal {

void CopyTriggerText(const DocPtr& dialog, int levelsUp, std::u16string_view sourceId,
                     std::u16string_view targetId) {
  DocPtr ancestor = dialog;
  for (int level = 0; level < levelsUp && ancestor; ++level) ancestor = ancestor->getOwnerDoc();
  const ElemPtr source = FindById(ancestor, sourceId);
  const ElemPtr target = FindById(dialog, targetId);
  if (!source || !target) return;
  SetValue(target, ValueOf(source));
}

}  // namespace spindle::job_internal
