// The common open and save dialogs.
#include <windows.h>
// after windows.h, which it needs
#include <commdlg.h>

#include <array>

#include "host/os.h"
#include "platform/win32/file_dialog_filter.h"
#include "platform/win32/wide.h"

namespace Loom::OS {
namespace {

// The record the library fills is the 64-bit OPENFILENAMEW; the dialog's path buffer
// holds 520 characters.
static_assert(sizeof(OPENFILENAMEW) == 152, "64-bit OPENFILENAMEW");
constexpr std::size_t kPathCharacters = 520;

}  // namespace

FileDialogResult runFileDialog(const FileDialogRequest& request, wstring& path) {
  using spindle::win32::WideOrNull;
  std::array<wchar_t, kPathCharacters> file{};
  const wstring filter = spindle::win32::DialogFilter(request.filter);

  OPENFILENAMEW record{};
  record.lStructSize = sizeof record;
  record.hwndOwner = static_cast<HWND>(request.owner);
  record.lpstrFilter = WideOrNull(filter);
  record.lpstrFile = file.data();
  record.nMaxFile = static_cast<DWORD>(file.size());
  record.lpstrInitialDir = WideOrNull(request.initialDirectory);
  record.lpstrTitle = WideOrNull(request.title);
  record.lpstrDefExt = WideOrNull(request.defaultExtension);
  record.Flags = request.flags;

  const BOOL chosen =
      request.kind == FileDialogKind::kSave ? GetSaveFileNameW(&record) : GetOpenFileNameW(&record);
  if (chosen) {
    path = spindle::win32::FromWide(file.data());
    return FileDialogResult::kChosen;
  }
  // A cancelled dialog leaves no extended error.
  return CommDlgExtendedError() == 0 ? FileDialogResult::kCancelled : FileDialogResult::kFailed;
}

}  // namespace Loom::OS
