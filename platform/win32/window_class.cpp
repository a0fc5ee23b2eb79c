#include <array>

#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {

wstring topLevelWindowClassName(WindowHandle window) {
  if (window == nullptr) return {};
  HWND top = static_cast<HWND>(window);
  for (HWND parent; (parent = GetParent(top)) != nullptr;) top = parent;
  // 255 characters and the terminator.
  std::array<wchar_t, 256> name{};
  if (GetClassNameW(top, name.data(), static_cast<int>(name.size())) == 0) return {};
  return spindle::win32::FromWide(name.data());
}

}  // namespace Loom::OS
