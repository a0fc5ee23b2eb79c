#include "host/os.h"
#include "platform/win32/wide.h"

namespace Loom::OS {

LocalTime localTime() {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return LocalTime{now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

}  // namespace Loom::OS
