#include <windows.h>
// after windows.h, which it needs
#include <userenv.h>

#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {

wstring userProfileDirectory() {
  HANDLE token = nullptr;
  if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) return {};
  // The first call learns the length (terminator included), the second fills it.
  DWORD length = 0;
  GetUserProfileDirectoryW(token, nullptr, &length);
  wstring directory(length, u'\0');
  const bool known =
      length > 0 &&
      GetUserProfileDirectoryW(token, reinterpret_cast<wchar_t*>(directory.data()), &length);
  CloseHandle(token);
  return known ? wstring(directory.c_str()) : wstring();
}

}  // namespace Loom::OS
