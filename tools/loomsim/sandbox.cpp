#include "tools/loomsim/sandbox.h"

#include <algorithm>
#include <array>
#include <string>
#include <system_error>

#include "tools/loomsim/system.h"

namespace loomsim {
namespace {

constexpr std::array<std::string_view, 4> kPlaces = {"user", "driver", "allusers", "root"};

}  // namespace

std::span<const std::string_view> PlaceNames() { return kPlaces; }

bool IsPlace(std::string_view name) {
  return std::find(kPlaces.begin(), kPlaces.end(), name) != kPlaces.end();
}

Sandbox::Sandbox() {
  root_ = MakeTemporaryDirectory("loomsim-");
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
