#include <string>

#include "platform/win32/wide.h"

namespace spindle::win32 {

std::string Ansi(const Loom::wstring& text) {
  if (text.empty()) return {};
  const int length = static_cast<int>(text.size());
  const int bytes =
      WideCharToMultiByte(CP_ACP, 0, Wide(text), length, nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<std::size_t>(bytes), '\0');
  WideCharToMultiByte(CP_ACP, 0, Wide(text), length, out.data(), bytes, nullptr, nullptr);
  return out;
}

Loom::wstring FromAnsi(const char* text, std::size_t length) {
  if (length == 0) return {};
  const int count = MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(length), nullptr, 0);
  Loom::wstring out(static_cast<std::size_t>(count), u'\0');
  MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(length),
                      reinterpret_cast<wchar_t*>(out.data()), count);
  return out;
}

}  // namespace spindle::win32
