#include "tools/loomsim/sandbox.h"

#include <stdlib.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <system_error>

namespace loomsim {
namespace {

constexpr std::array<std::string_view, 4> kPlaces = {"user", "driver", "allusers", "root"};

}  // namespace

std::span<const std::string_view> PlaceNames() { return kPlaces; }

bool IsPlace(std::string_view name) {
  return std::find(kPlaces.begin(), kPlaces.end(), name) != kPlaces.end();
}

Sandbox::Sandbox() {
  std::string pattern = (std::filesystem::temp_directory_path() / "loomsim-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) {
    throw std::filesystem::filesystem_error("cannot create a temporary directory", pattern,
                                            std::error_code(errno, std::generic_category()));
  }
  root_ = pattern;
  for (std::string_view place : kPlaces) std::filesystem::create_directory(root_ / place);
}

Sandbox::~Sandbox() {
  if (keep_) return;
  std::error_code ignored;  // a tree that cannot be removed is left behind, not fatal
  std::filesystem::remove_all(root_, ignored);
}

std::optional<std::filesystem::path> Sandbox::Place(std::string_view place) const {
  if (!IsPlace(place)) return std::nullopt;
  return root_ / place;
}

}  // namespace loomsim
