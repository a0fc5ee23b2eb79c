// "twincolour" (xTwinColour): keeps the twin colour choice (printing in two colours) in
// step between the visible list "cmb_TwnColourList" and the two hidden printer property
// fields the driver saves: the colour render mode in use and the twin colour mode last
// chosen. Keeps no state.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xTwinColour final : public xClass {
 public:
  // Unmatched names, counts and kinds answer true: the colour page never looks at it.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xTwinColour> kMethods[];

  // The list's selected value becomes the value of both hidden fields.
  bool SetTwinColor(spindle::CallArgs& args);
  // The last twin colour mode ("TwinColor_2KR" when none) becomes the colour render
  // mode, and is selected in the list when the list holds it.
  bool LoadTwinColor(spindle::CallArgs& args);
  // The same, without touching the list.
  bool GetTwinColor(spindle::CallArgs& args);
};
