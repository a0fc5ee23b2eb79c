#include "tools/loomsim/library.h"

#include <windows.h>

#include <string>

#include "tools/loomsim/library_call.h"

namespace loomsim {

Library::Library(const std::string& path) {
  // The path is UTF-8, as every path of the runner.
  const std::u8string utf8(path.begin(), path.end());
  const HMODULE module = LoadLibraryW(std::filesystem::path(utf8).c_str());
  if (module == nullptr) {
    error_ = path + ": LoadLibraryW failed with error " + std::to_string(GetLastError());
    return;
  }
  handle_ = module;
  // Through void*: FARPROC is a function type that no real export has.
  findObject_ =
      reinterpret_cast<FindObject>(reinterpret_cast<void*>(GetProcAddress(module, "findObject")));
  if (findObject_ == nullptr) error_ = path + ": no exported findObject";
  InstallDiagnosticsHook(reinterpret_cast<void*>(GetProcAddress(module, "setDiagnosticsHook")));
}

Library::~Library() {
  if (handle_ != nullptr) FreeLibrary(static_cast<HMODULE>(handle_));
}

std::filesystem::path Library::InDirectory(const std::filesystem::path& directory) {
  return directory / "spindleui.dll";
}

}  // namespace loomsim
