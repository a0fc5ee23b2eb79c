#include "refhost/image_quality.h"

#include <cstdint>
#include <cstring>

#include "host/codes.h"
#include "host/settings.h"
#include "host/xul.h"

namespace refhost {

bool ImageQualityPlugin::call(const char* method, int argc, xarg_entry* args, xarg_entry* result) {
  if (method == nullptr || std::strcmp(method, "getSettingsObject") != 0 || argc != 1 ||
      args[0].kind != Loom::kArgDocument || result == nullptr) {
    return false;
  }
  auto* doc = reinterpret_cast<Loom::XUL::xXULDoc*>(static_cast<std::uintptr_t>(args[0].value));
  const Loom::SmartPtr<Loom::XUL::xWindow> window = doc ? doc->getXWindow() : nullptr;
  if (!window) return false;
  Loom::Services::PersistentItem& branch = window->getSettings()["IMAGE_QUALITY"];
  result->value = reinterpret_cast<std::uintptr_t>(&branch);
  return true;
}

ImageQualityPlugin& imageQualityPlugin() {
  static ImageQualityPlugin* const instance = new ImageQualityPlugin();
  return *instance;
}

}  // namespace refhost
