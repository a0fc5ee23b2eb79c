// Placeholder entry of the scenario runner: loads the library as the host does and
// shows the registry and the Math object at work.
#include <cstdio>

#include "host/codes.h"
#include "refhost/args.h"
#include "tools/loomsim/library.h"

int main(int, char** argv) {
  loomsim::Library library(loomsim::Library::besideProgram(argv[0]));
  if (!library.ok()) {
    std::fprintf(stderr, "loomsim: %s\n", library.error().c_str());
    return 1;
  }
  xClass* math = library.findObject("Math");
  std::printf("findObject(\"Math\") -> %p; again -> %p; \"math\" -> %p\n",
              static_cast<void*>(math), static_cast<void*>(library.findObject("Math")),
              static_cast<void*>(library.findObject("math")));
  refhost::Args args;
  args.integer(42);
  const bool answer = library.findObject("obj")->call("abc", args.count(), args.records(), nullptr);
  std::printf("obj.abc(int(42)) -> %s\n", answer ? "true" : "false");
  return 0;
}
