#include "platform/win32/file_dialog_filter.h"

namespace spindle::win32 {

Loom::wstring DialogFilter(const Loom::wstring& scriptFilter) {
  Loom::wstring filter = scriptFilter;
  while (!filter.empty() && filter.back() == u';') filter.pop_back();
  if (filter.empty()) return filter;
  for (Loom::wchar& c : filter) {
    if (c == u';') c = u'\0';
  }
  // Ends the last part and the list; c_str() adds the final terminator.
  filter.push_back(u'\0');
  return filter;
}

}  // namespace spindle::win32
