#include "tools/loomsim/place_ref.h"

#include "refhost/file_io.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

std::string PlaceChoices() {
  std::string choices;
  for (std::string_view place : PlaceNames()) {
    choices.append(choices.empty() ? "" : ", ").append(place);
  }
  return "a place (" + choices + ")";
}

bool StaysInside(const std::string& path) {
  const std::filesystem::path relative = refhost::PathFromUtf8(path);
  if (path.empty() || relative.is_absolute() || path.starts_with('/')) return false;
  for (const std::filesystem::path& part : relative) {
    if (part == "..") return false;
  }
  return true;
}

}  // namespace

PlaceRef ParsePlaceRef(Cursor& cursor) {
  PlaceRef ref;
  const std::string_view rest = cursor.Rest();
  ref.place = cursor.Name(PlaceChoices());
  if (!IsPlace(ref.place)) throw ParseError(PlaceChoices(), std::string(rest));
  cursor.Expect(":", "':' and a quoted path after the place");
  const std::string_view pathText = cursor.Rest();
  ref.path = cursor.Text("a quoted path");
  if (!StaysInside(ref.path)) {
    throw ParseError("a relative path that stays inside the place", std::string(pathText));
  }
  return ref;
}

std::string PlaceRefText(const PlaceRef& ref) { return ref.place + ":" + Quote(ref.path); }

std::filesystem::path ResolvePlace(const Sandbox& sandbox, const PlaceRef& ref) {
  return *sandbox.Place(ref.place) / refhost::PathFromUtf8(ref.path);
}

}  // namespace loomsim
