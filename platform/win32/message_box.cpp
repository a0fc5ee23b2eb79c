#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {

int messageBox(WindowHandle owner, const wstring& text, const wstring& caption, unsigned style) {
  using spindle::win32::Wide;
  return MessageBoxW(static_cast<HWND>(owner), Wide(text), Wide(caption), style);
}

}  // namespace Loom::OS
