// Expectations on what the last call did besides its result: the script statements it
// ran, what it printed, and the message boxes it showed.
#include <algorithm>
#include <string>
#include <string_view>
#include <vector>

#include "tools/loomsim/grammar.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

// Scripts end their statements with ';' or not; either way it is the same statement.
std::string_view WithoutTerminator(std::string_view statement) {
  while (!statement.empty() && (statement.back() == ';' || statement.back() == ' ')) {
    statement.remove_suffix(1);
  }
  return statement;
}

std::string ListText(const std::vector<std::string>& texts, std::string_view none) {
  if (texts.empty()) return std::string(none);
  std::string list;
  for (const std::string& text : texts) list += (list.empty() ? "" : ", ") + Quote(text);
  return list;
}

Parsed ParseScriptExpectation(StatementInput& input) {
  const std::string statement = input.cursor().Text("a quoted script statement");
  return {"expect script " + Quote(statement), [statement](Scenario& scenario) {
            const LastCall* last = scenario.LastCallForCheck();
            if (last == nullptr) return;
            const bool ran = std::any_of(
                last->scripts.begin(), last->scripts.end(), [&](const std::string& recorded) {
                  return WithoutTerminator(recorded) == WithoutTerminator(statement);
                });
            scenario.Check(ran, ListText(last->scripts, "no script"));
          }};
}

Parsed ParseNoScriptExpectation(StatementInput&) {
  return {"expect no script", [](Scenario& scenario) {
            if (const LastCall* last = scenario.LastCallForCheck()) {
              scenario.Check(last->scripts.empty(), ListText(last->scripts, "no script"));
            }
          }};
}

Parsed ParseStdoutExpectation(StatementInput& input) {
  const std::string text = input.cursor().Text("the quoted text printed");
  return {"expect stdout " + Quote(text), [text](Scenario& scenario) {
            if (const LastCall* last = scenario.LastCallForCheck()) {
              scenario.Check(last->printed == text, Quote(last->printed));
            }
          }};
}

Parsed ParseMessageExpectation(StatementInput& input) {
  const std::string text = input.cursor().Text("the quoted text of the message box");
  return {"expect message " + Quote(text), [text](Scenario& scenario) {
            const LastCall* last = scenario.LastCallForCheck();
            if (last == nullptr) return;
            const bool shown = std::find(last->messages.begin(), last->messages.end(), text) !=
                               last->messages.end();
            scenario.Check(shown, ListText(last->messages, "no message box"));
          }};
}

Parsed ParseNoMessageExpectation(StatementInput&) {
  return {"expect no message", [](Scenario& scenario) {
            if (const LastCall* last = scenario.LastCallForCheck()) {
              scenario.Check(last->messages.empty(), ListText(last->messages, "no message box"));
            }
          }};
}

constexpr StatementForm kForms[] = {
    {"expect script", "expect script \"statement\"", ParseScriptExpectation},
    {"expect no script", "expect no script", ParseNoScriptExpectation},
    {"expect stdout", "expect stdout \"text\"", ParseStdoutExpectation},
    {"expect message", "expect message \"text\"", ParseMessageExpectation},
    {"expect no message", "expect no message", ParseNoMessageExpectation},
};

}  // namespace

extern const Facility kEffectFacility{"effects of a call", kForms, nullptr};

}  // namespace loomsim
