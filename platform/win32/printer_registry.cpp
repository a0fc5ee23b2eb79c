// A printer's REG_MULTI_SZ value, read through the narrow registry functions.
#include <string>

#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {
namespace {

// Where the spooler keeps each printer's keys (PrinterDriverData among them).
constexpr char kPrintersKey[] = "SYSTEM\\CurrentControlSet\\Control\\Print\\Printers\\";

// The strings of a REG_MULTI_SZ buffer: each ends with a terminator, an empty one ends
// the list (also when the buffer ends without it).
void SplitMultiString(const std::string& buffer, vector<wstring>& out) {
  for (std::size_t start = 0; start < buffer.size();) {
    const std::size_t end = buffer.find('\0', start);
    const std::size_t stop = end == std::string::npos ? buffer.size() : end;
    if (stop == start) break;
    out.push_back(spindle::win32::FromAnsi(buffer.data() + start, stop - start));
    start = stop + 1;
  }
}

}  // namespace

bool readPrinterMultiString(const wstring& printerName, const wstring& key, const wstring& value,
                            vector<wstring>& out) {
  using spindle::win32::Ansi;
  const std::string path = kPrintersKey + Ansi(printerName) + "\\" + Ansi(key);
  HKEY handle = nullptr;
  if (RegOpenKeyExA(HKEY_LOCAL_MACHINE, path.c_str(), 0, KEY_QUERY_VALUE, &handle) !=
      ERROR_SUCCESS) {
    return false;
  }
  const std::string name = Ansi(value);
  DWORD type = 0;
  DWORD size = 0;
  bool read =
      RegQueryValueExA(handle, name.c_str(), nullptr, &type, nullptr, &size) == ERROR_SUCCESS &&
      type == REG_MULTI_SZ;
  std::string buffer(size, '\0');
  read = read && RegQueryValueExA(handle, name.c_str(), nullptr, &type,
                                  reinterpret_cast<BYTE*>(buffer.data()), &size) == ERROR_SUCCESS;
  RegCloseKey(handle);
  if (!read) return false;
  buffer.resize(size);
  out.clear();
  SplitMultiString(buffer, out);
  return true;
}

}  // namespace Loom::OS
