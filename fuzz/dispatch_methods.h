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
      {"xulguisettings",
       {"restoreDefault", "restoreSubDefault", "elementExists", "hideMenuItem", "hideMenuItems",
        "copyValueBetweenElements", "isValueEmpty", "setPrintJob", "convertInchMMAndSaveValue",
        "enableForAdmin", "enableForControlPanel", "disableForControlPanel", "VerifyDecimalPlaces",
        "restoreOSDefault"}},
      {"customisation",
       {"loadDlg", "okClick", "checkPluginExclusions", "checkPlugin", "restoreDefaultsPlugins"}},
      {"twincolour", {"setTwinColor", "loadTwinColor", "getTwinColor"}},
      {"schedule",
       {"formatDate", "formatTime", "hasTimeElapsed", "displayTime", "setCurrentDateTime"}},
      {"cuspapsizdlg", {}},
      {"impexpbut",
       {"enable", "SaveSettingsForExport", "LoadSettingsForImport", "setConfirmedOK",
        "applyCustomSetting"}},
      {"bookletDetail", {}},
      {"finishingTab", {}},
      {"overwrite", {"setTrigger"}},
      {"deleteconfirm", {"setTrigger"}},
      {"posterPrint", {}},
      {"xcBypass", {"updateBypassDlg", "saveBypassDlg", "checkBypassStatus"}},
      {"tabpaper", {}},
      {"textsummary", {"selectedItem", "stripSpecialText"}},
      {"Math", {"round", "clampMultiple"}},
      {"xul_utils", {"getItemCount",     "getSelectedItemAttribute",
                     "openFileBrowser",  "getProductType",
                     "getPDLOutputType", "getPrintPaperSize",
                     "getPaperType",     "setMenuListByValue",
                     "getTechnology",    "getFinisherType",
                     "saveGUIState",     "restoreGUIState",
                     "clearGUIState",    "isUSShipment",
                     "isJapShipment",    "getPortType",
                     "encrypt",          "decrypt",
                     "isControlPanel",   "setFirstVisibleMenuItem"}},
      {"dev_settings",
       {"removeSetting", "loadSetting", "selectItemWithSetting", "saveSetting",
        "restorePersistentFactoryDefaults", "mark", "keep", "revert"}},
      {"settings",
       {"removeSetting", "loadSetting", "selectItemWithSetting", "saveSetting",
        "restorePersistentFactoryDefaults", "deleteUserRegKey", "mark", "keep", "revert"}},
      {"inputValidation",
       {"VerifyInputRangeMax",
        "VerifyInputRangeMin",
        "VerifyInputRangeMinSetMin",
        "VerifyInputIntegerEditing",
        "VerifyInputIntegerEditingFinish",
        "VerifyInputRangeMinOrBlank",
        "VerifyInputRangeMaxFloat",
        "VerifyInputRangeMinFloat",
        "VerifyInputRangeMinFloatOrBlank",
        "VerifyPvtPrntPassword",
        "VerifyVaultBoxFolder",
        "VerifyVaultBoxPassword",
        "VerifyInvalidDeptCode",
        "VerifyDeptCode",
        "VerifyNickname",
        "loadNickname",
        "saveNickNameToFile",
        "VerifyDecimalPtLimit",
        "verifyTextInput",
        "verifyPageNumbersEntered"}},
      {"xpropsheet", {}},
      {"xcompart", {"updatePrintJobList", "checkVaultboxEnabled", "loadPrivatePrintFromFile"}},
      {"defMenuSettings", {"loaddefmenusettings", "savedefmenusettings"}},
      {"tabBasic",
       {"setOSSettingsBasedPaperSize", "updatePageScaleRatio", "updateMediaTypeFromInputBin",
        "updatePrintPaperSizeFromInputBin", "updateInsertPageMediaType", "updateOutputBin"}},
      {"txtPreview", {"setLengthValueLabel"}},
      {"profiles",
       {"generateProfilesList", "regenerateProfilesList", "selectProfile", "setProfile",
        "addProfile", "addTempProfile", "deleteProfile", "checkProfileName", "areProfilesFull",
        "getProfileFileTemplate", "getProfileNameTemplate", "loadSetting"}},
  }};
  return table;
}

}  // namespace fuzz
