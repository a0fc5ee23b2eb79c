#include <windows.h>
// after windows.h, which it needs
#include <winnetwk.h>

#include <array>

#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {

bool networkUserName(wstring& name) {
  std::array<wchar_t, 256> buffer{};
  DWORD length = static_cast<DWORD>(buffer.size());
  // No resource name: the user of the current process's default network connection.
  if (WNetGetUserW(nullptr, buffer.data(), &length) != NO_ERROR) return false;
  name = spindle::win32::FromWide(buffer.data());
  return true;
}

}  // namespace Loom::OS
