#include "tools/loomsim/library.h"

#include <dlfcn.h>

#include "tools/loomsim/library_call.h"

namespace loomsim {

Library::Library(const std::string& path) {
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    error_ = dlerror();
    return;
  }
  findObject_ = reinterpret_cast<FindObject>(dlsym(handle_, "findObject"));
  if (findObject_ == nullptr) error_ = path + ": no exported findObject";
  InstallDiagnosticsHook(dlsym(handle_, "setDiagnosticsHook"));
}

Library::~Library() {
  if (handle_ != nullptr) dlclose(handle_);
}

std::filesystem::path Library::InDirectory(const std::filesystem::path& directory) {
  return directory / "libspindleui.so";
}

}  // namespace loomsim
