#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {

bool deleteUserRegistryKey(const wstring& keyPath) {
  // RegDeleteKeyW deletes only a key without subkeys; a missing key fails too.
  return RegDeleteKeyW(HKEY_CURRENT_USER, spindle::win32::Wide(keyPath)) == ERROR_SUCCESS;
}

}  // namespace Loom::OS
