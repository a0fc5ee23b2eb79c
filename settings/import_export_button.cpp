#include "settings/import_export_button.h"

#include <array>
#include <string_view>

#include "core/elements.h"
#include "core/text.h"
#include "host/codes.h"
#include "host/file.h"
#include "host/os.h"
#include "host/properties.h"
#include "host/script.h"
#include "host/settings.h"
#include "settings/import_check.h"
#include "settings/settings_access.h"
#include "settings/temp_backing_store.h"

using spindle::Count;
using spindle::DocPtr;
using spindle::ElemPtr;
namespace access = spindle::settings_internal;

const spindle::Method<xImportExportButton> xImportExportButton::kMethods[] = {
    {{"enable", Count::kExactly, 1, {Loom::kArgDocument}}, &xImportExportButton::Enable},
    {{"SaveSettingsForExport", Count::kExactly, 1, {Loom::kArgDocument}},
     &xImportExportButton::SaveSettingsForExport},
    {{"LoadSettingsForImport", Count::kExactly, 1, {Loom::kArgDocument}},
     &xImportExportButton::LoadSettingsForImport},
    {{"setConfirmedOK", Count::kExactly, 1, {Loom::kArgDocument}},
     &xImportExportButton::SetConfirmedOK},
    {{"applyCustomSetting", Count::kExactly, 1, {Loom::kArgDocument}},
     &xImportExportButton::ApplyCustomSetting},
};

bool xImportExportButton::call(const char *method, int argc, xarg_entry *args, xarg_entry *) {
  return spindle::Dispatch<xImportExportButton>(*this, kMethods, false, method, argc, args);
}

namespace {

using Loom::Services::PersistentItem;
using Loom::Services::PersistentSettings;

// The export file's type by the printer's output language; both spellings are
// the device's.
struct ExportType {
  std::string_view pdl;
  std::string_view pdlLower;
  std::u16string_view filter;
  std::u16string_view extension;
};
constexpr ExportType kExportTypes[] = {
    {"PS", "ps", u"(*.cfp)", u".cfp"},
    {"PCLXL", "pclxl", u"(*.cfu)", u".cfu"},
    {"XPS", "xps", u"(*.cfv)", u".cfv"},
};

// Members that belong to one machine and never travel, removed in this order.
constexpr std::array<std::u16string_view, 7> kMachineMembers = {
    u"Zuconf.xml",  u"Zuhhsp.xml", u"job_tmp.xml",
    u"plugins.txt", u"locale.txt", u"printCapsDocument.xml",
    u"zutsnmp.ini"};

constexpr std::u16string_view kCustomPaperMember = u"Zucustpap.xml";
constexpr char kTemplateBranch[] = "TEMPLATE";
constexpr char kImageQualityBranch[] = "IMAGE_QUALITY";
constexpr std::string_view kImageQualityKeep = "setting";
// Export keeps "TEMPLATE"; import clears "TEMPLATES" before loading. The names
// differ on purpose (the import side never held the templates under that name)
// and stay as they are.
constexpr char kImportClearedBranch[] = "TEMPLATES";

constexpr std::u16string_view kExportTitle = u"$IDS_DLG_EXPORT;";
constexpr std::u16string_view kImportTitle = u"$IDS_DLG_IMPORT;";
constexpr std::u16string_view kConfirmDialog = u"Zuhdlg_confirmImport.xul";
constexpr std::u16string_view kExportError = u"err_Export";
constexpr std::u16string_view kImportError = u"err_Import";
constexpr std::array<std::u16string_view, 2> kButtons = {u"but_OthImp", u"but_OthExp"};
// Where an import is extracted before it is moved into the user directory.
constexpr std::u16string_view kImportStaging = u"~import.tmp";
// Beside the target: the export is written here, then renamed over the target.
constexpr std::u16string_view kPartialSuffix = u".partial";

// Save: ask before replacing a file, the folder must exist, no read-only box
// (OFN_OVERWRITEPROMPT | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY). Open: the file
// must exist too (OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_HIDEREADONLY).
constexpr unsigned kSaveDialogFlags = 0x0002 | 0x0800 | 0x0004;
constexpr unsigned kOpenDialogFlags = 0x1000 | 0x0800 | 0x0004;

// The lists an import may change, each refreshed by its page's own script.
struct Refresh {
  std::u16string_view element;
  const char *source;
  const char *script;
};
constexpr Refresh kRefreshes[] = {
    {u"cmb_ComProfile", "<import profiles>",
     "profiles.regenerateProfilesList(document, cmb_ComProfile);"},
    {u"lst_selectedWatermark", "<import wm>", "call watermarkDlg.reloadWMMenuList(document);"},
    {u"cmb_EffOverlay", "<import overlay>",
     "call ovlprint.loadOvlName(document); rule rul_MultiOverlayEnable;"},
    {u"menu_security_pattern", "<import hsp>",
     "call xhsp.regenerateHSPMenu(document, menu_security_pattern, '');"},
};

const ExportType *ExportTypeOf(const DocPtr &doc) {
  const std::optional<Loom::string> pdl = spindle::DeviceSetting(doc, "customisation", "OutputPDL");
  if (!pdl) return nullptr;
  for (const ExportType &type : kExportTypes) {
    if (*pdl == type.pdl || *pdl == type.pdlLower) return &type;
  }
  return nullptr;
}

// The UI archive: the document's own, else the file the property names. Both
// name the same file; the document's is asked first because it is already open.
Loom::wstring UiArchivePath(const DocPtr &doc) {
  if (const Loom::SmartPtr<Loom::Services::Archive> archive = doc->getArchive()) {
    return archive->path().path();
  }
  const Loom::SmartPtr<Loom::PropertyManager> properties = doc->getUserData();
  return properties ? properties->getString("loom.ui.archive.file") : Loom::wstring();
}

// "err_Export" / "err_Import" in the document, else in the page that opened it
// (the confirmation dialog reports into the Others tab).
void SetError(const DocPtr &doc, std::u16string_view id, bool failed) {
  ElemPtr element = spindle::FindById(doc, id);
  if (!element) element = spindle::FindById(doc->getOwnerDoc(), id);
  if (element) spindle::SetValue(element, spindle::BoolText(failed));
}

Loom::OS::FileDialogResult AskForFile(const DocPtr &doc, Loom::OS::FileDialogKind kind,
                                      std::u16string_view title, unsigned flags,
                                      Loom::wstring &path) {
  Loom::OS::FileDialogRequest request;
  request.kind = kind;
  request.owner = Loom::XUL::getXULRootHWND(doc.get());
  request.title = Loom::wstring(title);
  if (const ExportType *type = ExportTypeOf(doc)) request.filter = Loom::wstring(type->filter);
  request.initialDirectory = access::UserDirectory(doc);
  request.flags = flags;
  return Loom::OS::runFileDialog(request, path);
}

// The export file: the name as typed with the extension of the printer's
// language
// ("%s%s"); a name that already ends with it keeps it once, as the user meant.
Loom::File ExportTarget(const DocPtr &doc, const Loom::wstring &typed) {
  const ExportType *type = ExportTypeOf(doc);
  if (type == nullptr || std::u16string_view(typed).ends_with(type->extension)) {
    return Loom::File(typed);
  }
  return Loom::File(typed + Loom::wstring(type->extension));
}

// Only the templates and the image-quality "setting" entries travel.
void Prune(PersistentSettings &tree) {
  for (std::size_t i = tree.getNumChildren(); i-- > 0;) {
    const Loom::string key = tree.childAt(i).key();
    if (key != kTemplateBranch && key != kImageQualityBranch) tree.remove(key);
  }
  if (PersistentItem *quality = tree.find(kImageQualityBranch)) {
    for (std::size_t i = quality->getNumChildren(); i-- > 0;) {
      const Loom::string key = quality->childAt(i).key();
      if (key.find(kImageQualityKeep) == Loom::string::npos) quality->remove(key);
    }
  }
}

// The pruned user tree as a document, staged in memory; the live tree reads
// exactly as before afterwards (marked, pruned, saved to the stage, reverted,
// its store set back).
Loom::SmartPtr<Loom::Dom::Document> StagePrunedSettings(PersistentSettings &tree) {
  const Loom::SmartPtr<Loom::Services::BackingStoreIO> stage(new TempBackingStoreIO());
  access::BorrowedStore borrowed(tree, stage);
  tree.mark();
  Prune(tree);
  const bool saved = tree.saveSettings();
  tree.revert();
  return saved ? stage->read() : nullptr;
}

// Writes the export archive at `partial`: the UI archive's copy with the custom
// paper sizes and the settings, without the machine's members. Throws
// ArchiveError.
void WriteExportArchive(const DocPtr &doc, const Loom::File &partial,
                        Loom::Dom::Document &settings) {
  const Loom::SmartPtr<Loom::Services::Archive> archive = Loom::Services::Archive::open(partial);
  const Loom::File customPaper =
      Loom::File(access::UserDirectory(doc)) / Loom::wstring(kCustomPaperMember);
  Loom::Services::FileBackingStoreIO paperStore(customPaper, 0, 1);
  if (const Loom::SmartPtr<Loom::Dom::Document> paper = paperStore.read()) {
    Loom::Services::ArchiveBackingStoreIO(archive, Loom::wstring(kCustomPaperMember), 0)
        .write(paper.get());
  }
  for (std::u16string_view member : kMachineMembers) archive->remove(Loom::wstring(member));
  Loom::Services::ArchiveBackingStoreIO settingsMember(
      archive, Loom::wstring(access::kExportedSettingsMember), 0);
  if (!settingsMember.write(&settings)) {
    throw Loom::Services::ArchiveError("the settings cannot be written into the export");
  }
  archive->save();
}

bool Export(const DocPtr &doc, Loom::XUL::xWindow &window, const Loom::File &target) {
  const Loom::SmartPtr<Loom::Dom::Document> settings = StagePrunedSettings(window.getSettings());
  const Loom::wstring uiArchive = UiArchivePath(doc);
  if (!settings || uiArchive.empty()) return false;
  const Loom::File partial(target.path() + Loom::wstring(kPartialSuffix));
  try {
    if (!Loom::File(uiArchive).copyTo(partial)) return false;
    WriteExportArchive(doc, partial, *settings);
  } catch (const Loom::Services::ArchiveError &) {
    partial.remove();
    return false;
  }
  // Only a complete export replaces a file of that name.
  if (partial.moveTo(target)) return true;
  partial.remove();
  return false;
}

// Loads the user tree from the extracted settings file as the import does: the
// image-quality "setting" entries and "TEMPLATES" go, then the file's tree
// replaces the content. Judged on a scratch tree first, so a file that cannot
// be loaded changes nothing.
bool LoadImportedSettings(PersistentSettings &tree, const Loom::File &file) {
  const Loom::SmartPtr<Loom::Services::BackingStoreIO> store(
      new Loom::Services::FileBackingStoreIO(file, 0, 1));
  PersistentSettings scratch;
  scratch.setBackingStoreIO(store);
  if (!scratch.loadSettings()) return false;
  access::BorrowedStore borrowed(tree, store);
  if (PersistentItem *quality = tree.find(kImageQualityBranch)) {
    for (std::size_t i = quality->getNumChildren(); i-- > 0;) {
      const Loom::string key = quality->childAt(i).key();
      if (key.find(kImageQualityKeep) != Loom::string::npos) quality->remove(key);
    }
  }
  tree.remove(kImportClearedBranch);
  return tree.loadSettings();
}

// Extracts `archive` into `staging`, then moves every member but the settings
// into the user directory. False, with the user directory untouched, when
// extraction fails.
bool PlaceMembers(const Loom::Services::Archive &archive, const Loom::File &staging,
                  const Loom::File &userDir) {
  try {
    archive.extractAll(staging);
  } catch (const Loom::Services::ArchiveError &) {
    return false;
  }
  bool placed = true;
  for (const Loom::wstring &member : archive.members()) {
    if (member == access::kExportedSettingsMember) continue;
    placed = (staging / member).moveTo(userDir / member) && placed;
  }
  return placed;
}

}  // namespace

bool xImportExportButton::Enable(spindle::CallArgs &args) {
  const DocPtr &doc = args.doc(0);
  if (!doc) return true;
  // Both need the UI archive: export copies it, import restores into what it
  // serves.
  const bool available = !UiArchivePath(doc).empty();
  for (std::u16string_view id : kButtons) {
    if (const ElemPtr button = spindle::FindById(doc, id)) {
      button->setAttr(Loom::kAttrDisabled, Loom::wstring(spindle::BoolText(!available)));
    }
  }
  return true;
}

bool xImportExportButton::SaveSettingsForExport(spindle::CallArgs &args) {
  const DocPtr &doc = args.doc(0);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!window) return true;
  Loom::wstring chosen;
  switch (
      AskForFile(doc, Loom::OS::FileDialogKind::kSave, kExportTitle, kSaveDialogFlags, chosen)) {
    case Loom::OS::FileDialogResult::kCancelled:
      SetError(doc, kExportError, false);
      return true;
    case Loom::OS::FileDialogResult::kFailed:
      SetError(doc, kExportError, true);
      return true;
    case Loom::OS::FileDialogResult::kChosen:
      break;
  }
  SetError(doc, kExportError, !Export(doc, *window, ExportTarget(doc, chosen)));
  return true;
}

bool xImportExportButton::LoadSettingsForImport(spindle::CallArgs &args) {
  const DocPtr &doc = args.doc(0);
  if (!doc) return true;
  Loom::wstring chosen;
  switch (
      AskForFile(doc, Loom::OS::FileDialogKind::kOpen, kImportTitle, kOpenDialogFlags, chosen)) {
    case Loom::OS::FileDialogResult::kCancelled:
      return true;
    case Loom::OS::FileDialogResult::kFailed:
      SetError(doc, kImportError, true);
      return true;
    case Loom::OS::FileDialogResult::kChosen:
      break;
  }
  try {
    Loom::Services::Archive::open(Loom::File(chosen));
  } catch (const Loom::Services::ArchiveError &) {
    // A file that is no archive, or one the host refuses, is not imported later either.
    importPath_.clear();
    SetError(doc, kImportError, true);
    return true;
  }
  importPath_ = chosen;
  SetError(doc, kImportError, false);
  Loom::XUL::openDialog(doc.get(), Loom::wstring(kConfirmDialog), Loom::wstring(kImportTitle));
  return true;
}

bool xImportExportButton::SetConfirmedOK(spindle::CallArgs &args) {
  const DocPtr &doc = args.doc(0);
  const Loom::SmartPtr<Loom::XUL::xWindow> window = spindle::WindowOf(doc);
  if (!window) return true;
  const Loom::wstring userDirPath = access::UserDirectory(doc);
  if (importPath_.empty() || userDirPath.empty()) {
    SetError(doc, kImportError, true);
    return true;
  }
  const Loom::File userDir(userDirPath);
  const Loom::File staging = userDir / Loom::wstring(kImportStaging);
  bool imported = false;
  try {
    const Loom::SmartPtr<Loom::Services::Archive> archive =
        Loom::Services::Archive::open(Loom::File(importPath_));
    // Judged whole before anything is written; extracted beside, then moved
    // into place.
    if (access::ArchiveMayBeImported(archive) && staging.removeAll() && staging.createDirectory()) {
      imported = PlaceMembers(*archive, staging, userDir) &&
                 LoadImportedSettings(window->getSettings(),
                                      staging / Loom::wstring(access::kExportedSettingsMember));
    }
  } catch (const Loom::Services::ArchiveError &) {
    imported = false;
  }
  staging.removeAll();
  SetError(doc, kImportError, !imported);
  return true;
}

bool xImportExportButton::ApplyCustomSetting(spindle::CallArgs &args) {
  const DocPtr &doc = args.doc(0);
  const Loom::SmartPtr<Loom::JS::Environment> env = doc ? doc->getScriptEnv() : nullptr;
  if (!env) return true;
  for (const Refresh &refresh : kRefreshes) {
    if (spindle::FindById(doc, refresh.element))
      env->doString(refresh.script, refresh.source, nullptr);
  }
  return true;
}
