// "xul_utils" (xUtil): Facts about the installed printer and driver for the pages (product type,
// printer language, technology, finisher, port type, market, control-panel mode), list helpers, a
// file browser, a per-page GUI state store and the host's string encryption.
//
// Nearly every answer goes to the document's "vars" element. The GUI state store keeps, in
// memory only and for as long as the library is loaded, one cleaned copy of each page's
// controls, keyed by the page's file name: a fresh copy of the same page gets it back.
#pragma once

#include "core/dispatch.h"
#include "host/serialiser.h"
#include "host/xclass.h"

class xUtil final : public xClass {
 public:
  xUtil();
  // Unmatched names, counts and kinds answer false.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xUtil> kMethods[];

  // "out_param" = the number of items of a menu list; false for no items or another type.
  bool GetItemCount(spindle::CallArgs& args);
  // "out_param" = the named attribute of the menu list's first selected item.
  bool GetSelectedItemAttribute(spindle::CallArgs& args);
  // Runs the open or save dialog; the chosen path becomes the element's value.
  bool OpenFileBrowser(spindle::CallArgs& args);
  // "prodType": "EXBP", "EXMASH" or "Universal" by the device's model name.
  bool GetProductType(spindle::CallArgs& args);
  // "pdlType": "PS", "PCLXL" or "XPS" by the device's printer language.
  bool GetPDLOutputType(spindle::CallArgs& args);
  // "pps": the output paper size or the print paper size, as "PPS_SameAs" says.
  bool GetPrintPaperSize(spindle::CallArgs& args);
  // "paperType": the selected media type.
  bool GetPaperType(spindle::CallArgs& args);
  // Marks the first item with the value as selected.
  bool SetMenuListByValue(spindle::CallArgs& args);
  // The driver technology by the common settings folder, under the attribute named.
  bool GetTechnology(spindle::CallArgs& args);
  // "finisher": the kind of finisher the device has.
  bool GetFinisherType(spindle::CallArgs& args);
  // Save, put back and forget the page's GUI state.
  bool SaveGUIState(spindle::CallArgs& args);
  bool RestoreGUIState(spindle::CallArgs& args);
  bool ClearGUIState(spindle::CallArgs& args);
  // "usshipment" / "japshipment" on the element: the market the driver was shipped for.
  bool IsUSShipment(spindle::CallArgs& args);
  bool IsJapShipment(spindle::CallArgs& args);
  // "PortType": "Network" or "Other".
  bool GetPortType(spindle::CallArgs& args);
  // The host's encryption of the text (or its decryption) as the element's value.
  bool Encrypt(spindle::CallArgs& args);
  bool Decrypt(spindle::CallArgs& args);
  // "cp": whether the sheet runs from the control panel.
  bool IsControlPanel(spindle::CallArgs& args);
  // Selects the first item that is not hidden and runs the list's command script.
  bool SetFirstVisibleMenuItem(spindle::CallArgs& args);

  Loom::Services::XULDocSerialiser guiState_;
};
