// The image-quality plug-in's script object ("imgQuality"), which another driver library
// provides in the real host. The library asks it for the image-quality settings of a
// page: getSettingsObject(document) hands back, in the result record's value, the
// "IMAGE_QUALITY" branch of the user settings tree of the document's window, which the
// plug-in keeps and the caller only reads and writes.
#pragma once

#include "host/xclass.h"

namespace refhost {

class ImageQualityPlugin final : public xClass {
 public:
  // getSettingsObject with one document record; false for anything else.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;
};

// The one plug-in object (it lives as long as the process).
ImageQualityPlugin& imageQualityPlugin();

}  // namespace refhost
