// Files named as scenarios name them: a place of the scenario's directory tree (user,
// driver, allusers, root; sandbox.h) and a path relative to it, user:"sub/file.xml".
#pragma once

#include <filesystem>
#include <string>

#include "tools/loomsim/cursor.h"
#include "tools/loomsim/sandbox.h"

namespace loomsim {

struct PlaceRef {
  std::string place;
  std::string path;  // relative, '/' between names, never leaving the place
};

// Reads PLACE:"path"; throws ParseError for an unknown place, an empty or absolute path,
// or one with a ".." part.
PlaceRef ParsePlaceRef(Cursor& cursor);
// PLACE:"path".
std::string PlaceRefText(const PlaceRef& ref);
// The file's path in `sandbox`.
std::filesystem::path ResolvePlace(const Sandbox& sandbox, const PlaceRef& ref);

}  // namespace loomsim
