#include "tools/loomsim/value_check.h"

#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {

ValueExpectation ParseValueExpectation(Cursor& cursor) {
  if (cursor.Accept("==")) return {ValueExpectation::Op::kEquals, cursor.Text("a quoted text")};
  if (cursor.Accept("absent")) return {ValueExpectation::Op::kAbsent, {}};
  if (cursor.Accept("present")) return {ValueExpectation::Op::kPresent, {}};
  cursor.Fail("== \"text\", absent or present");
}

std::string ValueExpectationText(const ValueExpectation& expectation) {
  switch (expectation.op) {
    case ValueExpectation::Op::kEquals:
      return "== " + Quote(expectation.text);
    case ValueExpectation::Op::kAbsent:
      return "absent";
    case ValueExpectation::Op::kPresent:
      break;
  }
  return "present";
}

void CheckValue(Scenario& scenario, const ValueExpectation& expectation,
                const std::optional<std::string>& actual, std::string_view missing) {
  const std::string got = actual ? Quote(*actual) : std::string(missing);
  switch (expectation.op) {
    case ValueExpectation::Op::kEquals:
      scenario.Check(actual && *actual == expectation.text, got);
      return;
    case ValueExpectation::Op::kAbsent:
      scenario.Check(!actual, got);
      return;
    case ValueExpectation::Op::kPresent:
      scenario.Check(actual.has_value(), got);
      return;
  }
}

}  // namespace loomsim
