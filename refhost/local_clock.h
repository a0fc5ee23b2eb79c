// The calendar time of the machine's time zone, by the platform's thread-safe call: one
// implementation per platform, in posix/ and win32/.
#pragma once

#include <ctime>

namespace refhost {

std::tm LocalCalendarTime(std::time_t when);

}  // namespace refhost
