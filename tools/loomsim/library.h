// Loads the library the way the host does: dlopen, then findObject looked up by its
// undecorated name. The runner reaches the library's objects only through this.
#pragma once

#include <filesystem>
#include <string>

class xClass;

namespace loomsim {

class Library {
 public:
  using FindObject = xClass* (*)(const char*);

  // Loads `path`; ok() tells whether it worked and error() why not.
  explicit Library(const std::string& path);
  ~Library();
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  bool ok() const { return findObject_ != nullptr; }
  const std::string& error() const { return error_; }
  // The library's findObject; null when loading failed.
  FindObject finder() const { return findObject_; }

  // The library's file in `directory` (the program's, where the build puts both).
  static std::filesystem::path InDirectory(const std::filesystem::path& directory);

 private:
  void* handle_ = nullptr;
  FindObject findObject_ = nullptr;
  std::string error_;
};

}  // namespace loomsim
