// The temporary directory tree a scenario runs in, so that nothing it does touches the
// machine outside it.
//
// The tree holds one directory per place a scenario can name: "user" (the user's own
// directory), "driver" (the driver's directory), "allusers" (the all-users directory) and
// "root" (the pages' root directory). It is removed when the Sandbox dies, unless kept.
#pragma once

#include <filesystem>
#include <optional>
#include <span>
#include <string_view>

namespace loomsim {

// The places, in the order a file's report lists them.
std::span<const std::string_view> PlaceNames();
bool IsPlace(std::string_view name);

class Sandbox {
 public:
  // Creates a fresh tree below the system's temporary directory; throws
  // std::filesystem::filesystem_error when it cannot.
  Sandbox();
  ~Sandbox();
  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  const std::filesystem::path& root() const { return root_; }
  // The directory of `place`, or nothing for a name that is not a place.
  std::optional<std::filesystem::path> Place(std::string_view place) const;
  // Leaves the tree in place when the Sandbox dies.
  void Keep() { keep_ = true; }

 private:
  std::filesystem::path root_;
  bool keep_ = false;
};

}  // namespace loomsim
