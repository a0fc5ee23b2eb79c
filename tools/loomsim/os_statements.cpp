// The simulated operating system's clock and message boxes (refhost/os_simulation.h).
// Each file starts with the real local clock; `clock "2011-05-03 17:30:00"` fixes it from
// that statement on, and it does not advance. Every message box the library shows is
// reported with the call that showed it (`! message "text"`) and checked by
// `expect message`.
#include <array>
#include <string>
#include <string_view>

#include "refhost/os_simulation.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

constexpr std::string_view kClockForm = "a quoted local time \"YYYY-MM-DD HH:MM:SS\"";

// One field of the clock's text: where it stands, its width and the values it may take.
struct ClockField {
  std::size_t position;
  std::size_t width;
  int low;
  int high;
  int Loom::OS::LocalTime::*member;
};

constexpr std::array<ClockField, 6> kClockFields = {{
    {0, 4, 0, 9999, &Loom::OS::LocalTime::year},
    {5, 2, 1, 12, &Loom::OS::LocalTime::month},
    {8, 2, 1, 31, &Loom::OS::LocalTime::day},
    {11, 2, 0, 23, &Loom::OS::LocalTime::hour},
    {14, 2, 0, 59, &Loom::OS::LocalTime::minute},
    {17, 2, 0, 60, &Loom::OS::LocalTime::second},
}};
constexpr std::string_view kClockPattern = "0000-00-00 00:00:00";

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// The time the text names, when it has exactly the clock's form and each field is in range.
bool ReadClock(std::string_view text, Loom::OS::LocalTime& time) {
  if (text.size() != kClockPattern.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (IsDigit(kClockPattern[i]) ? !IsDigit(text[i]) : text[i] != kClockPattern[i]) return false;
  }
  for (const ClockField& field : kClockFields) {
    int value = 0;
    for (char c : text.substr(field.position, field.width)) value = value * 10 + (c - '0');
    if (value < field.low || value > field.high) return false;
    time.*field.member = value;
  }
  return true;
}

Parsed ParseClock(StatementInput& input) {  // clock "2011-05-03 17:30:00"
  Cursor& cursor = input.cursor();
  const std::string found(cursor.Rest());
  const std::string text = cursor.Text(kClockForm);
  Loom::OS::LocalTime time{};
  if (!ReadClock(text, time)) throw ParseError(std::string(kClockForm), found);
  return {"clock " + Quote(text), [time](Scenario&) { refhost::fixClock(time); }};
}

void StartOs(Scenario& scenario) {
  refhost::resetOsSimulation();
  refhost::setMessageBoxListener([&scenario](const refhost::MessageBoxRecord& box) {
    scenario.messageBoxes().Shown(NarrowText(box.text));
  });
}

constexpr StatementForm kForms[] = {
    {"clock", "clock \"YYYY-MM-DD HH:MM:SS\"", ParseClock},
};

}  // namespace

extern const Facility kOsFacility{"the clock and message boxes", kForms, StartOs};

}  // namespace loomsim
