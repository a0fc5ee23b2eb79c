// The object registry: findObject and the destruction of the created objects at unload.
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "core/diagnostics.h"
#include "core/input_validation.h"
#include "core/math.h"
#include "core/object.h"
#include "core/spindleui.h"
#include "core/util.h"
#include "job/common_part.h"
#include "job/confirm_bypass.h"
#include "job/customisation.h"
#include "job/delete_confirm.h"
#include "job/gui_settings.h"
#include "job/over_write.h"
#include "job/property_sheet_ui.h"
#include "job/schedule.h"
#include "job/text_summary.h"
#include "job/twin_colour.h"
#include "job/user_name.h"
#include "paper/booklet_detail.h"
#include "paper/cus_pap_siz_dlg.h"
#include "paper/finishing_tab.h"
#include "paper/margin.h"
#include "paper/poster_print.h"
#include "paper/tab_basic.h"
#include "paper/tab_paper.h"
#include "paper/txt_preview.h"
#include "settings/def_menu_settings.h"
#include "settings/dev_settings.h"
#include "settings/import_export_button.h"
#include "settings/persistent_settings.h"
#include "settings/profiles.h"

namespace {

// Allocated through Loom::Base::operator new, which the classes inherit; a null
// allocation constructs nothing and yields null.
template <class T>
xClass* Create() {
  return new T;
}

struct RegistryEntry {
  const char* name;
  xClass* (*create)();
};

// In the order findObject tests the names, which is also the order of destruction.
constexpr RegistryEntry kRegistry[] = {
    {"obj", &Create<xObject>},
    {"margin", &Create<xMargin>},
    {"username", &Create<xUserName>},
    {"xulguisettings", &Create<xGuiSettings>},
    {"customisation", &Create<xCustomisation>},
    {"twincolour", &Create<xTwinColour>},
    {"schedule", &Create<xSchedule>},
    {"cuspapsizdlg", &Create<xCusPapSizDlg>},
    {"impexpbut", &Create<xImportExportButton>},
    {"bookletDetail", &Create<xBookletDetail>},
    {"finishingTab", &Create<xFinishingTab>},
    {"overwrite", &Create<xOverWrite>},
    {"deleteconfirm", &Create<xDeleteConfirm>},
    {"posterPrint", &Create<xPosterPrint>},
    {"xcBypass", &Create<xConfirmBypass>},
    {"tabpaper", &Create<xTabPaper>},
    {"textsummary", &Create<xTextSummary>},
    {"Math", &Create<xMath>},
    {"xul_utils", &Create<xUtil>},
    {"dev_settings", &Create<xDevSettings>},
    {"settings", &Create<xPersistentSettings>},
    {"inputValidation", &Create<xInputValidation>},
    {"xpropsheet", &Create<xPropertySheetUI>},
    {"xcompart", &Create<xCommonPart>},
    {"defMenuSettings", &Create<xdefMenuSettings>},
    {"tabBasic", &Create<xTabBasic>},
    {"txtPreview", &Create<xTxtPreview>},
    {"profiles", &Create<xProfiles>},
};

xClass* g_objects[std::size(kRegistry)] = {};

// Runs from the run-time's exit list of this library, i.e. when the host unloads it.
// The pointers are left as they are: nothing can ask for an object after unload.
void DestroyCreatedObjects() {
  for (xClass* object : g_objects) delete object;
}

// atexit from a shared library registers with that library's own exit list.
[[maybe_unused]] const int g_exit_routine_registered = std::atexit(DestroyCreatedObjects);

}  // namespace

extern "C" xClass* findObject(const char* name) {
  if (name == nullptr) return nullptr;
  for (std::size_t i = 0; i < std::size(kRegistry); ++i) {
    if (std::strcmp(name, kRegistry[i].name) != 0) continue;
    if (g_objects[i] == nullptr) g_objects[i] = kRegistry[i].create();
    return g_objects[i];
  }
  return nullptr;
}

const char* spindle::RegisteredName(const xClass* object) {
  for (std::size_t i = 0; i < std::size(kRegistry); ++i) {
    if (g_objects[i] == object) return kRegistry[i].name;
  }
  return "?";
}
