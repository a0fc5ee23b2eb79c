// Files and zip archives in the scenario's directory tree, and the expectations on them.
#include <filesystem>
#include <fstream>
#include <functional>
#include <optional>
#include <system_error>

#include "host/file.h"
#include "host/settings.h"
#include "refhost/file_io.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/place_ref.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"
#include "tools/loomsim/zip_files.h"

namespace loomsim {
namespace {

std::filesystem::path MakeParent(Scenario& scenario, const PlaceRef& ref) {
  const std::filesystem::path path = ResolvePlace(scenario.sandbox(), ref);
  std::error_code error;
  std::filesystem::create_directories(path.parent_path(), error);
  if (error) throw SetupError{"cannot create the directory of " + PlaceRefText(ref)};
  return path;
}

Parsed ParseFile(StatementInput& input) {
  const PlaceRef ref = ParsePlaceRef(input.cursor());
  const Block& block = input.TakeBlock();
  return {"file " + PlaceRefText(ref) + " <<" + block.marker,
          [ref, text = block.text](Scenario& scenario) {
            std::ofstream out(MakeParent(scenario, ref), std::ios::binary | std::ios::trunc);
            if (!(out << text) || !out.flush()) {
              throw SetupError{"cannot write " + PlaceRefText(ref)};
            }
          }};
}

Parsed ParseArchive(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const PlaceRef ref = ParsePlaceRef(cursor);
  cursor.Expect("member", "member \"Name\" after the archive");
  const std::string member = cursor.Text("the quoted name of the member");
  const Block& block = input.TakeBlock();
  return {
      "archive " + PlaceRefText(ref) + " member " + Quote(member) + " <<" + block.marker,
      [ref, member, text = block.text](Scenario& scenario) {
        if (std::optional<std::string> error =
                WriteZipMember(MakeParent(scenario, ref), member, text)) {
          throw SetupError{"cannot write " + member + " into " + PlaceRefText(ref) + ": " + *error};
        }
      }};
}

Parsed ParseUiArchive(StatementInput& input) {
  const PlaceRef ref = ParsePlaceRef(input.cursor());
  return {"uiarchive " + PlaceRefText(ref), [ref](Scenario& scenario) {
            const std::filesystem::path path = ResolvePlace(scenario.sandbox(), ref);
            const Loom::File file(Loom::wstring(HostPath(path)));
            try {
              scenario.SetUiArchive(Loom::Services::Archive::open(file));
              // The other way the host names the UI archive: both give the same file.
              scenario.sheet().properties().set("loom.ui.archive.file", path.string());
            } catch (const Loom::Services::ArchiveError& error) {
              throw SetupError{"cannot open " + PlaceRefText(ref) +
                               " as a zip archive: " + error.what()};
            }
          }};
}

Parsed ExistenceExpectation(std::string echo, const PlaceRef& ref, bool exists) {
  return {echo + (exists ? " exists" : " absent"), [ref, exists](Scenario& scenario) {
            const bool found =
                std::filesystem::is_regular_file(ResolvePlace(scenario.sandbox(), ref));
            scenario.Check(found == exists, found ? "it exists" : "no such file");
          }};
}

// The bytes a content expectation looks into; nothing, with `missing` saying why.
using ContentReader =
    std::function<std::optional<std::string>(const std::filesystem::path&, std::string& missing)>;

Parsed ContentExpectation(Cursor& cursor, std::string echo, const PlaceRef& ref, bool contains,
                          ContentReader reader) {
  const std::string text = cursor.Text("a quoted text");
  return {echo + (contains ? " contains " : " lacks ") + Quote(text),
          [ref, contains, text, reader](Scenario& scenario) {
            std::string missing;
            const std::optional<std::string> content =
                reader(ResolvePlace(scenario.sandbox(), ref), missing);
            if (!content) return scenario.Check(false, missing);
            const bool found = content->find(text) != std::string::npos;
            // Enough of the file to see why, not a whole profile.
            constexpr std::size_t kShown = 200;
            scenario.Check(found == contains, (found ? "it holds it in " : "it is not in ") +
                                                  Quote(content->substr(0, kShown)));
          }};
}

Parsed ParseFileExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const PlaceRef ref = ParsePlaceRef(cursor);
  const std::string echo = "expect file " + PlaceRefText(ref);
  const bool exists = cursor.Accept("exists");
  if (exists || cursor.Accept("absent")) return ExistenceExpectation(echo, ref, exists);
  const bool contains = cursor.Accept("contains");
  if (contains || cursor.Accept("lacks")) {
    return ContentExpectation(cursor, echo, ref, contains,
                              [](const std::filesystem::path& path, std::string& missing) {
                                missing = "no such file";
                                return refhost::ReadWholeFile(path);
                              });
  }
  cursor.Fail("exists, absent, contains \"text\" or lacks \"text\"");
}

Parsed ParseArchiveExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const PlaceRef ref = ParsePlaceRef(cursor);
  if (cursor.Accept("member")) {
    const std::string member = cursor.Text("the quoted name of a member");
    const std::string echo = "expect archive " + PlaceRefText(ref) + " member " + Quote(member);
    const bool contains = cursor.Accept("contains");
    if (!contains && !cursor.Accept("lacks")) cursor.Fail("contains \"text\" or lacks \"text\"");
    return ContentExpectation(cursor, echo, ref, contains,
                              [member](const std::filesystem::path& path, std::string& missing) {
                                return ZipMemberBytes(path, member, missing);
                              });
  }
  const bool has = cursor.Accept("has");
  if (!has && !cursor.Accept("lacks")) {
    cursor.Fail("has \"Member\", lacks \"Member\" or member \"Member\" contains|lacks \"text\"");
  }
  const std::string member = cursor.Text("the quoted name of a member");
  return {"expect archive " + PlaceRefText(ref) + (has ? " has " : " lacks ") + Quote(member),
          [ref, has, member](Scenario& scenario) {
            std::string error;
            const std::optional<bool> found =
                ZipHasMember(ResolvePlace(scenario.sandbox(), ref), member, error);
            if (!found) return scenario.Check(false, "no archive: " + error);
            scenario.Check(*found == has, *found ? "it has it" : "it lacks it");
          }};
}

constexpr StatementForm kForms[] = {
    {"file", "file PLACE:\"path\" <<END", ParseFile},
    {"archive", "archive PLACE:\"name.zip\" member \"Member\" <<END", ParseArchive},
    {"uiarchive", "uiarchive PLACE:\"name.zip\"", ParseUiArchive},
    {"expect file",
     "expect file PLACE:\"path\" exists|absent\nexpect file PLACE:\"path\" contains|lacks \"text\"",
     ParseFileExpectation},
    {"expect archive",
     "expect archive PLACE:\"path\" has|lacks \"Member\"\n"
     "expect archive PLACE:\"path\" member \"Member\" contains|lacks \"text\"",
     ParseArchiveExpectation},
};

}  // namespace

extern const Facility kFileFacility{"files", kForms, nullptr};

}  // namespace loomsim
