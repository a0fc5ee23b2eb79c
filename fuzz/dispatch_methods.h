// The method names the dispatcher target calls, per object, in registry order. Keep it
// in step with the objects' method tables: a name missing here is still reached through
// the arbitrary names the target also tries, but far less often.
#pragma once

#include <array>
#include <string_view>
#include <vector>

namespace fuzz {

struct ObjectMethods {
  std::string_view object;
  std::vector<std::string_view> methods;
};

inline const std::array<ObjectMethods, 28>& DispatchTable() {
  static const std::array<ObjectMethods, 28> table = {{
      {"obj", {"abc"}},
      {"margin", {"toggle", "setCustomMargin", "updateDlg", "validateValues"}},
      {"username", {"extract"}},
      {"xulguisettings", {}},
      {"customisation", {}},
      {"twincolour", {"setTwinColor", "loadTwinColor", "getTwinColor"}},
      {"schedule", {}},
      {"cuspapsizdlg", {}},
      {"impexpbut", {}},
      {"bookletDetail", {}},
      {"finishingTab", {}},
      {"overwrite", {"setTrigger"}},
      {"deleteconfirm", {"setTrigger"}},
      {"posterPrint", {}},
      {"xcBypass", {"updateBypassDlg", "saveBypassDlg", "checkBypassStatus"}},
      {"tabpaper", {}},
      {"textsummary", {"selectedItem", "stripSpecialText"}},
      {"Math", {"round", "clampMultiple"}},
      {"xul_utils", {}},
      {"dev_settings",
       {"removeSetting", "loadSetting", "selectItemWithSetting", "saveSetting",
        "restorePersistentFactoryDefaults", "mark", "keep", "revert"}},
      {"settings",
       {"removeSetting", "loadSetting", "selectItemWithSetting", "saveSetting",
        "restorePersistentFactoryDefaults", "deleteUserRegKey", "mark", "keep", "revert"}},
      {"inputValidation", {}},
      {"xpropsheet", {}},
      {"xcompart", {}},
      {"defMenuSettings", {"loaddefmenusettings", "savedefmenusettings"}},
      {"tabBasic",
       {"setOSSettingsBasedPaperSize", "updatePageScaleRatio", "updateMediaTypeFromInputBin",
        "updatePrintPaperSizeFromInputBin", "updateInsertPageMediaType", "updateOutputBin"}},
      {"txtPreview", {"setLengthValueLabel"}},
      {"profiles", {}},
  }};
  return table;
}

}  // namespace fuzz
