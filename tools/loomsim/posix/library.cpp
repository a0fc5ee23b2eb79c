#include "tools/loomsim/library.h"

#include <dlfcn.h>

namespace loomsim {

Library::Library(const std::string& path) {
  handle_ = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle_ == nullptr) {
    error_ = dlerror();
    return;
  }
  findObject_ = reinterpret_cast<FindObject>(dlsym(handle_, "findObject"));
  if (findObject_ == nullptr) error_ = path + ": no exported findObject";
}

Library::~Library() {
  if (handle_ != nullptr) dlclose(handle_);
}

std::filesystem::path Library::InDirectory(const std::filesystem::path& directory) {
  return directory / "libspindleui.so";
}

}  // namespace loomsim
