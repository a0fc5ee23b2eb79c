// Spooler forms at level 1 (FORM_INFO_1W): sizes in thousandths of a millimetre.
#include <vector>

#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {

bool getFormSize(PrinterHandle printer, const wstring& formName, FormSize& size) {
  // The first call learns the size of the buffer, the second fills it.
  DWORD needed = 0;
  GetFormW(printer, const_cast<wchar_t*>(spindle::win32::Wide(formName)), 1, nullptr, 0, &needed);
  if (needed < sizeof(FORM_INFO_1W)) return false;
  std::vector<BYTE> buffer(needed);
  if (!GetFormW(printer, const_cast<wchar_t*>(spindle::win32::Wide(formName)), 1, buffer.data(),
                needed, &needed)) {
    return false;
  }
  const auto* form = reinterpret_cast<const FORM_INFO_1W*>(buffer.data());
  size = FormSize{static_cast<int>(form->Size.cx), static_cast<int>(form->Size.cy)};
  return true;
}

bool setFormSize(PrinterHandle printer, const wstring& formName, const FormSize& size) {
  FORM_INFO_1W form{};
  form.Flags = FORM_USER;
  form.pName = const_cast<wchar_t*>(spindle::win32::Wide(formName));
  form.Size = SIZEL{size.width, size.height};
  form.ImageableArea = RECTL{0, 0, size.width, size.height};
  // SetFormW replaces an existing form; a new one is added.
  if (SetFormW(printer, form.pName, 1, reinterpret_cast<BYTE*>(&form))) return true;
  return AddFormW(printer, 1, reinterpret_cast<BYTE*>(&form)) != FALSE;
}

}  // namespace Loom::OS
