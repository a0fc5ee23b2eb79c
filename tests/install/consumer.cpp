// A program outside this tree, built against an installed prefix: it runs one call that
// matches and one that does not, and prints why the second did not.
#include <cstdio>
#include <cstring>

#include "core/spindleui.h"
#include "refhost/args.h"
#include "refhost/sheet.h"

namespace {
const char* g_reason = "";
void Remember(const SpindleUnmatchedCall* call) { g_reason = strdup(call->reason); }
}  // namespace

int main() {
  refhost::Sheet sheet;
  auto page = sheet.loadDocument("<window id='w'><vbox id='vars'/></window>", "page.xul");
  refhost::Args args;
  args.document(page.get()).real(2.5);
  setDiagnosticsHook(Remember);
  xClass* math = findObject("Math");
  const bool rounded = math->call("round", args.count(), args.records(), nullptr);
  const bool misspelt = math->call("rnd", args.count(), args.records(), nullptr);
  std::printf("%d %d %s\n", rounded, misspelt, g_reason);
  return rounded && !misspelt ? 0 : 1;
}
