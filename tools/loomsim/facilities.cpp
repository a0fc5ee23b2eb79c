// The one list of statement tables. A facility added later (drawers, forms, the printer,
// the registry, dialogs, the clock, ...) defines its own Facility in its own file and is
// added here, once.
#include <vector>

#include "tools/loomsim/grammar.h"

namespace loomsim {

extern const Facility kDocumentFacility;
extern const Facility kSettingsFacility;
extern const Facility kFileFacility;
extern const Facility kScriptFacility;
extern const Facility kCallFacility;
extern const Facility kEffectFacility;
extern const Facility kDeviceFacility;
extern const Facility kSettingsFileFacility;
extern const Facility kUserFacility;
extern const Facility kPluginFacility;
extern const Facility kOsFacility;
extern const Facility kConfigurationFacility;
extern const Facility kFileDialogFacility;
extern const Facility kSessionFacility;

std::span<const Facility> Facilities() {
  static const std::vector<Facility> kAll = {
      kSettingsFacility,     kDocumentFacility, kFileFacility,          kDeviceFacility,
      kSettingsFileFacility, kUserFacility,     kPluginFacility,        kScriptFacility,
      kCallFacility,         kEffectFacility,   kOsFacility,            kConfigurationFacility,
      kFileDialogFacility,   kSessionFacility,
  };
  return kAll;
}

}  // namespace loomsim
