// A scenario file runs in a child process of its own: a crash there ends that file only,
// the parent counts what ran before it, and the file's temporary tree goes.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>

#include "core/spindleui.h"
#include "tools/loomsim/runner.h"

namespace loomsim {
namespace {

// "crasher.abort(document)" ends the process as a fault no handler comes back from.
class Crasher final : public xClass {
 public:
  bool call(const char*, int, xarg_entry*, xarg_entry*) override { std::abort(); }
};

Crasher g_crasher;

xClass* FindWithCrasher(const char* name) {
  if (name != nullptr && std::strcmp(name, "crasher") == 0) return &g_crasher;
  return findObject(name);
}

TEST(ChildProcessTest, ACrashEndsItsFileAndTheRunGoesOn) {
  const std::filesystem::path directory =
      std::filesystem::temp_directory_path() / ("loomsim_child_" + std::to_string(getpid()));
  std::filesystem::create_directories(directory / "tmp");
  std::ofstream(directory / "crash.scn")
      << "doc d <<X\n<window/>\nX\nexpect object \"Math\" present\ncall crasher.abort(d)\n";
  std::ofstream(directory / "good.scn") << "expect object \"Math\" present\n";
  const std::vector<std::filesystem::path> files = {directory / "crash.scn",
                                                    directory / "good.scn"};
  std::ostringstream out;
  const std::string tmpdir = getenv("TMPDIR") != nullptr ? getenv("TMPDIR") : "";
  setenv("TMPDIR", (directory / "tmp").c_str(), 1);
  EXPECT_FALSE(RunScenarioFiles(
      [] {
        return LoadedLibrary{FindWithCrasher, nullptr, {}};
      },
      files, RunOptions{true, false}, out));
  tmpdir.empty() ? unsetenv("TMPDIR") : setenv("TMPDIR", tmpdir.c_str(), 1);
  EXPECT_EQ(out.str(), "ERROR " + (directory / "crash.scn").string() +
                           ": the file crashed: Aborted at line 5; the rest of it did not run\n"
                           "2 passed, 1 failed\n");
  EXPECT_TRUE(std::filesystem::is_empty(directory / "tmp"));
  std::filesystem::remove_all(directory);
}

}  // namespace
}  // namespace loomsim
