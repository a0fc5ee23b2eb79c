#include "refhost/local_clock.h"

namespace refhost {

std::tm LocalCalendarTime(std::time_t when) {
  std::tm local{};
  localtime_s(&local, &when);
  return local;
}

}  // namespace refhost
