// The basic tab's automatic zoom: the percentage at which the original page fits the
// print paper, with N-up, booklet gutters and custom margins taken into account.
//
// xTabBasic's updatePageScaleRatio runs it; the booklet and finishing code reaches it
// through the same script method after changing the paper size.
#pragma once

#include "core/dispatch.h"

namespace spindle::paper {

// Computes the zoom from the document's paper controls, the page-size table and the
// spooler's custom forms, and shows it in "ePTKWPageScaling_CustomSquare_Scale" and
// "preview_lbMS" (or empties them under manual scaling). Nothing happens for an unknown
// product; a missing element, property or page size ends it quietly, keeping what was
// already written.
void UpdatePageScaleRatio(const DocPtr& doc);

}  // namespace spindle::paper
