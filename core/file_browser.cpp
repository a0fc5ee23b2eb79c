#include "core/file_browser.h"

#include "core/elements.h"
#include "core/text.h"
#include "host/os.h"

namespace spindle {
namespace {

// OFN_PATHMUSTEXIST | OFN_FILEMUSTEXIST, and OFN_OVERWRITEPROMPT for saving.
constexpr unsigned kOpenFlags = 0x1800;
constexpr unsigned kSaveFlags = 0x1802;
// The dialog's file buffer, in wide characters with the terminator: a longer path does
// not fit, and the dialog reports that as a failure (FNERR_BUFFERTOOSMALL).
constexpr std::size_t kFileBufferLength = 520;

// The settings file filter, the only one whose dialog gets a title of the driver's own.
constexpr std::string_view kSettingsFileFilter = "HSP (*.hsp);*.hsp;;";
constexpr std::u16string_view kImportTitle = u"$IDS_DLG_IMPORT;";
constexpr std::u16string_view kExportTitle = u"$IDS_DLG_EXPORT;";

}  // namespace

std::optional<BrowseMode> BrowseModeOf(std::string_view mode) {
  if (mode == "open") return BrowseMode::kOpen;
  if (mode == "save") return BrowseMode::kSave;
  return std::nullopt;
}

std::optional<Loom::wstring> BrowseForFile(const DocPtr& doc, BrowseMode mode,
                                           std::string_view filter) {
  const bool open = mode == BrowseMode::kOpen;
  Loom::OS::FileDialogRequest request;
  request.kind = open ? Loom::OS::FileDialogKind::kOpen : Loom::OS::FileDialogKind::kSave;
  request.owner = Loom::XUL::getXULRootHWND(doc.get());
  request.flags = open ? kOpenFlags : kSaveFlags;
  request.filter = Widen(filter);
  // Any other filter keeps the system's own title ("Open", "Save As"), which says enough.
  if (filter == kSettingsFileFilter) {
    if (const Loom::SmartPtr<Loom::XUL::xWindow> window = WindowOf(doc)) {
      request.title = window->resolveString(Loom::wstring(open ? kImportTitle : kExportTitle));
    }
  }
  Loom::wstring path;
  if (Loom::OS::runFileDialog(request, path) != Loom::OS::FileDialogResult::kChosen ||
      path.size() >= kFileBufferLength) {
    return std::nullopt;
  }
  return path;
}

}  // namespace spindle
