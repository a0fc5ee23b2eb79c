// The simulated message boxes and local clock behind host/os.h's Loom::OS::messageBox and
// Loom::OS::localTime.
//
// A message box is not drawn: it is recorded (owner, text, caption, style), handed to the
// listener the scenario runner connects, and answered with OK, as a user who reads it and
// presses the only button would. The clock reads the real local time until a test or
// scenario fixes it (`clock "2011-05-03 17:30:00"`); a fixed clock does not advance.
// resetOsSimulation goes back to the real clock, no record and no listener.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "host/os.h"

namespace refhost {

// What MessageBoxW answers for the OK button (IDOK).
inline constexpr int kMessageBoxOk = 1;

struct MessageBoxRecord {
  Loom::OS::WindowHandle owner;
  std::u16string text;
  std::u16string caption;
  unsigned style;
};

void resetOsSimulation();

// Every message box shown since the last reset, in order.
const std::vector<MessageBoxRecord>& messageBoxesShown();
// Called with each message box as it is shown; an empty function for none.
void setMessageBoxListener(std::function<void(const MessageBoxRecord&)> listener);

// From now on localTime answers exactly `time`; useRealClock undoes it.
void fixClock(const Loom::OS::LocalTime& time);
void useRealClock();

}  // namespace refhost
