// "tabBasic" (xTabBasic): keeps the basic tab's paper controls consistent with each other
// and with the device: postcard and A6 by region, media type and print paper size from
// the input bin, the insert page's media type, the output bin, and the automatic zoom.
//
// Called by the basic tab's scripts, and by the booklet and finishing code for the zoom.
// The object holds no state: every call reads the document, the device settings and the
// printer services afresh. Every call is answered true, also one that matches no method;
// a missing element, setting or printer makes a method a quiet no-op.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xTabBasic final : public xClass {
 public:
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xTabBasic> kMethods[];

  // setOSSettingsBasedPaperSize(document): shows the Japanese postcard ("JAPANESE_POSTCARD",
  // "PPS_JPost") for the Japanese shipment and A6 ("A6", "PPS_A6") for every other, hiding
  // the other pair; nothing unless all four elements exist.
  bool SetOSSettingsBasedPaperSize(spindle::CallArgs& args);
  // updatePageScaleRatio(document): the automatic zoom (paper/page_scale.h).
  bool UpdatePageScaleRatio(spindle::CallArgs& args);
  // updateMediaTypeFromInputBin(document): selects in "ePTKWPageMediaType" the media type
  // loaded in the drawer that "ePTKWPageInputBin" names; tab paper also shows the tab
  // controls.
  bool UpdateMediaTypeFromInputBin(spindle::CallArgs& args);
  // updatePrintPaperSizeFromInputBin(document): selects in "ePTKWPagePrintMediaSize" the
  // keyword of the paper the device settings name for the chosen drawer.
  bool UpdatePrintPaperSizeFromInputBin(spindle::CallArgs& args);
  // updateInsertPageMediaType(sourceId, targetId, document): selects in the list
  // `targetId` the insert-page media type loaded in the drawer the list `sourceId` names.
  bool UpdateInsertPageMediaType(spindle::CallArgs& args);
  // updateOutputBin(document): writes the selected output bin back into the value of
  // "ePTKWJobOutputBin", when one is selected.
  bool UpdateOutputBin(spindle::CallArgs& args);
};
