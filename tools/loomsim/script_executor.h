// Runs the script statements the library hands to the page's script environment, as the
// host's script engine would, for the statements a scenario can stand for:
//
//   obj.method(arg, ...);        a call into the library (also written `call obj.method(...);`)
//   rule NAME;                   the statements of the rule NAME the scenario defines
//
// Arguments: `document`, the name of an element of the calling document (its id), a
// string in '...' or "..." (a backslash takes the next character as it is), an integer
// (kind 1, inline) or a decimal number (kind 6). Every statement gets one line in the
// report of the running call; one that is none of the above is reported as not run and
// otherwise ignored, as a scenario cannot stand for the page's own script.
#pragma once

#include <string>
#include <string_view>

#include "refhost/script_env.h"

namespace loomsim {

class Scenario;
struct ScriptCall;

class ScriptExecutor {
 public:
  explicit ScriptExecutor(Scenario& scenario) : scenario_(scenario) {}

  // The executor of the sheet's script environment. False when a call could not be
  // made (no such object or element, an exception) or a rule's statement failed.
  bool Run(const refhost::ScriptEnvironment::Statement& statement);

 private:
  bool RunStatement(std::string_view statement);
  bool RunRule(const std::string& name, std::string_view statement);
  bool RunCall(const ScriptCall& call, std::string_view statement);
  // The report line of `statement`, indented by how deep it runs; returns its position.
  std::size_t Note(std::string_view statement, std::string_view outcome);

  Scenario& scenario_;
  int depth_ = 0;
};

}  // namespace loomsim
