// Settings files in the host's format, written into the scenario's directory tree: the
// driver's factory files ("<prefix>factdef.xml", "<prefix>devSettings.xml", ...) or a
// settings file of the user.
//
// The content is read as the host reads a settings tree and written by the host's own
// file store, so the file holds exactly what the host would have written, and content
// that is no settings tree stops the scenario where it is written, not later in a call
// that quietly fails to read it.
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "host/file.h"
#include "host/settings.h"
#include "refhost/backing_store.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/place_ref.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/source_text.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

// `xml` (described by `source` in errors, its first line being `firstLine` there) read
// as a settings tree and written to `ref` by a file store that may create the file.
void WriteSettingsFile(Scenario& scenario, const PlaceRef& ref, std::string_view xml,
                       const std::string& source, int firstLine) {
  RequireWellFormedXml(xml, source, firstLine);
  const Loom::SmartPtr<refhost::MemoryBackingStore> content(new refhost::MemoryBackingStore());
  Loom::Services::PersistentSettings tree;
  tree.setBackingStoreIO(content);
  if (!content->setXml(xml) || !tree.loadSettings()) {
    throw SetupError{source +
                     " is not a settings tree in the host's format (<settings> and <item>s)"};
  }
  const std::filesystem::path path = ResolvePlace(scenario.sandbox(), ref);
  std::error_code error;
  std::filesystem::create_directories(path.parent_path(), error);
  constexpr int kCreateMissing = 1;
  constexpr int kWritable = 0;
  tree.setBackingStoreIO(
      Loom::SmartPtr<Loom::Services::BackingStoreIO>(new Loom::Services::FileBackingStoreIO(
          Loom::File(Loom::wstring(HostPath(path))), kCreateMissing, kWritable)));
  if (error || !tree.saveSettings()) throw SetupError{"cannot write " + PlaceRefText(ref)};
}

// settingsfile driver:"kstfactdef.xml" <<END, or ... file "driver/kstfactdef.xml"
Parsed ParseSettingsFile(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const PlaceRef ref = ParsePlaceRef(cursor);
  const std::string echo = "settingsfile " + PlaceRefText(ref);
  if (cursor.Accept("file")) {
    const std::string source = cursor.Text("a quoted path to a settings file");
    return {echo + " file " + Quote(source), [ref, source](Scenario& scenario) {
              const std::filesystem::path file = scenario.directory() / source;
              WriteSettingsFile(scenario, ref, ReadSourceFile(file), file.string(), 1);
            }};
  }
  if (!input.hasBlock()) cursor.Fail("file \"path.xml\" or a <<END block");
  const Block& block = input.TakeBlock();
  return {echo + " <<" + block.marker,
          [ref, xml = block.text, line = block.firstLine](Scenario& scenario) {
            WriteSettingsFile(scenario, ref, xml, "the block", line);
          }};
}

constexpr StatementForm kForms[] = {
    {"settingsfile",
     "settingsfile PLACE:\"name.xml\" <<END\nsettingsfile PLACE:\"name.xml\" file \"path.xml\"",
     ParseSettingsFile},
};

}  // namespace

extern const Facility kSettingsFileFacility{"settings files", kForms, nullptr};

}  // namespace loomsim
