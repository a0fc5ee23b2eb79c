// The operating-system services the library needs, each at the level of its need.
//
// On Windows these are thin wrappers of the Win32 calls named beside each; the
// reference host simulates them from state a test or scenario sets, and records what
// the library asked.
#pragma once

#include "host/loom_base.h"

namespace Loom::OS {

using WindowHandle = void*;
using PrinterHandle = void*;

// A spooler form's size, in thousandths of a millimetre.
struct FormSize {
  int width;
  int height;
};

// GetFormW level 1 on `printer`: false when the form does not exist.
bool getFormSize(PrinterHandle printer, const wstring& formName, FormSize& size);
// SetFormW level 1: creates or replaces the form; false on failure.
bool setFormSize(PrinterHandle printer, const wstring& formName, const FormSize& size);

// RegDeleteKeyW under the current user's hive; false when the key cannot be deleted
// (a missing key included).
bool deleteUserRegistryKey(const wstring& keyPath);

// RegOpenKeyExA / RegQueryValueExA of a printer's REG_MULTI_SZ value.
bool readPrinterMultiString(const wstring& printerName, const wstring& key, const wstring& value,
                            vector<wstring>& out);

// GetOpenFileNameW / GetSaveFileNameW.
enum class FileDialogKind { kOpen, kSave };
struct FileDialogRequest {
  FileDialogKind kind = FileDialogKind::kOpen;
  WindowHandle owner = nullptr;
  wstring title;             // "" for the system's default title
  wstring filter;            // parts separated by ';' as the scripts give them
  wstring initialDirectory;  // "" for the system's choice
  wstring defaultExtension;  // without the dot; "" for none
  unsigned flags = 0;        // OFN_* flags
};
enum class FileDialogResult { kChosen, kCancelled, kFailed };
// On kChosen, `path` holds the chosen file; on kFailed, CommDlgExtendedError was non-zero.
FileDialogResult runFileDialog(const FileDialogRequest& request, wstring& path);

// WNetGetUserW for the current user; false when it fails.
bool networkUserName(wstring& name);

// Whether the current user has administrator rights (elevated token, or member of the
// built-in Administrators group S-1-5-32-544).
bool isUserAdministrator();

// The class name (GetClassNameW, at most 255 characters) of the top-level window that
// holds `window`, reached by GetParent; "" when there is no window.
wstring topLevelWindowClassName(WindowHandle window);

// MessageBoxW: modal, owned by `owner`; returns the button pressed.
int messageBox(WindowHandle owner, const wstring& text, const wstring& caption, unsigned style);

// GetUserProfileDirectoryW of the current user.
wstring userProfileDirectory();

// The local clock, broken down (time + localtime).
struct LocalTime {
  int year;    // e.g. 2011
  int month;   // 1 .. 12
  int day;     // 1 .. 31
  int hour;    // 0 .. 23
  int minute;  // 0 .. 59
  int second;  // 0 .. 60
};
LocalTime localTime();

}  // namespace Loom::OS
