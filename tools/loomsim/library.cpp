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

std::string Library::besideProgram(const std::string& argv0) {
  const std::size_t slash = argv0.find_last_of('/');
  const std::string directory = slash == std::string::npos ? "./" : argv0.substr(0, slash + 1);
  return directory + "libspindleui.so";
}

}  // namespace loomsim
