// The simulated message boxes and local clock.
#include "refhost/os_simulation.h"

#include <ctime>
#include <optional>
#include <utility>

#include "refhost/local_clock.h"

namespace refhost {
namespace {

struct OsSimulation {
  std::vector<MessageBoxRecord> shown;
  std::function<void(const MessageBoxRecord&)> listener;
  std::optional<Loom::OS::LocalTime> fixedTime;
};

OsSimulation& State() {
  static OsSimulation state;
  return state;
}

}  // namespace

void resetOsSimulation() { State() = OsSimulation(); }

const std::vector<MessageBoxRecord>& messageBoxesShown() { return State().shown; }

void setMessageBoxListener(std::function<void(const MessageBoxRecord&)> listener) {
  State().listener = std::move(listener);
}

void fixClock(const Loom::OS::LocalTime& time) { State().fixedTime = time; }

void useRealClock() { State().fixedTime.reset(); }

}  // namespace refhost

namespace Loom::OS {

int messageBox(WindowHandle owner, const wstring& text, const wstring& caption, unsigned style) {
  refhost::OsSimulation& state = refhost::State();
  state.shown.push_back({owner, std::u16string(text.begin(), text.end()),
                         std::u16string(caption.begin(), caption.end()), style});
  if (state.listener) state.listener(state.shown.back());
  return refhost::kMessageBoxOk;
}

LocalTime localTime() {
  if (const std::optional<LocalTime>& fixed = refhost::State().fixedTime) return *fixed;
  const std::tm local = refhost::LocalCalendarTime(std::time(nullptr));
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday,
          local.tm_hour,        local.tm_min,     local.tm_sec};
}

}  // namespace Loom::OS
