// The page's rules that script statements can run (`rule NAME;`), as the scenario
// defines them.
#include <string>

#include "tools/loomsim/grammar.h"
#include "tools/loomsim/scenario.h"

namespace loomsim {
namespace {

Parsed ParseRule(StatementInput& input) {
  const std::string name = input.cursor().Name("a rule name");
  const Block& block = input.TakeBlock();
  return {"rule " + name + " <<" + block.marker,
          [name, body = block.text](Scenario& scenario) { scenario.DefineRule(name, body); }};
}

constexpr StatementForm kForms[] = {
    {"rule", "rule NAME <<END (script statements, one or more a line)", ParseRule},
};

}  // namespace

extern const Facility kScriptFacility{"scripts", kForms, nullptr};

}  // namespace loomsim
