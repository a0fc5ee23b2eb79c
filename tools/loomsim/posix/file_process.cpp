#include "tools/loomsim/file_process.h"

#include <signal.h>
#include <stdlib.h>
#include <string.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <new>
#include <stdexcept>
#include <streambuf>
#include <string>

#include "tools/loomsim/statement_reader.h"

namespace loomsim {
namespace {

// How far the file running in a child process got, in memory the parent shares.
struct FileProgress {
  int line = 0;  // of the statement running or last run
  int passed = 0;
  int failed = 0;
  bool finished = false;
};

// Set in the child process only.
FileProgress* g_progress = nullptr;

// Hands what the child's report prints to the parent line by line, so that the lines
// before a crash are not lost.
class PipeBuffer final : public std::streambuf {
 public:
  explicit PipeBuffer(int fd) : fd_(fd) {}
  ~PipeBuffer() override { sync(); }
  PipeBuffer(const PipeBuffer&) = delete;
  PipeBuffer& operator=(const PipeBuffer&) = delete;

 protected:
  int_type overflow(int_type c) override {
    if (c == traits_type::eof()) return traits_type::not_eof(c);
    pending_.push_back(traits_type::to_char_type(c));
    if (c == '\n') sync();
    return c;
  }
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    pending_.append(text, static_cast<std::size_t>(count));
    if (pending_.find('\n') != std::string::npos) sync();
    return count;
  }
  int sync() override {
    std::size_t written = 0;
    while (written < pending_.size()) {
      const ssize_t n = ::write(fd_, pending_.data() + written, pending_.size() - written);
      if (n <= 0) break;
      written += static_cast<std::size_t>(n);
    }
    pending_.clear();
    return 0;
  }

 private:
  int fd_;
  std::string pending_;
};

}  // namespace

// Kept up to date as the file runs, so that the parent counts what ran before a crash.
void NoteProgress(int line, const Report& report) {
  if (g_progress == nullptr) return;
  g_progress->line = line;
  g_progress->passed = report.passed();
  g_progress->failed = report.failed();
}

// Runs one file in a child process, so that nothing going wrong while it runs (a fault
// outside a library call, a stack overflow) ends the run: the parent reports the crash,
// removes the file's temporary tree and goes on with the next file. The child's
// temporary trees are made in a directory of the parent's (TMPDIR), which the parent
// removes unless the file ran to its end with --keep.
void RunFileInOwnProcess(ObjectFinder finder, const std::filesystem::path& file,
                         std::string_view text, const RunOptions& options, Report& report,
                         std::ostream& out) {
  std::string holder = (std::filesystem::temp_directory_path() / "loomsim-run-XXXXXX").string();
  void* shared = mmap(nullptr, sizeof(FileProgress), PROT_READ | PROT_WRITE,
                      MAP_SHARED | MAP_ANONYMOUS, -1, 0);
  int fds[2];
  if (mkdtemp(holder.data()) == nullptr || shared == MAP_FAILED || pipe(fds) != 0) {
    throw std::runtime_error(std::string("cannot start a process for the file: ") +
                             strerror(errno));
  }
  auto* progress = new (shared) FileProgress();
  out.flush();
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child == 0) {
    close(fds[0]);
    setenv("TMPDIR", holder.c_str(), 1);
    g_progress = progress;
    {
      PipeBuffer buffer(fds[1]);
      std::ostream childOut(&buffer);
      Report childReport(childOut, options.quiet);
      RunScenario(finder, file, text, options, childReport);
      NoteProgress(progress->line, childReport);
      progress->finished = true;
    }
    // No exit handlers: they belong to the parent (the library's unload among them).
    _exit(0);
  }
  close(fds[1]);
  char chunk[4096];
  for (ssize_t n; (n = read(fds[0], chunk, sizeof chunk)) != 0;) {
    if (n > 0)
      out.write(chunk, n);
    else if (errno != EINTR)
      break;
  }
  close(fds[0]);
  int status = 0;
  if (child > 0) waitpid(child, &status, 0);
  report.Resume(file.string(), progress->passed, progress->failed);
  if (!progress->finished) {
    const std::string how = child < 0 ? "could not be started"
                            : WIFSIGNALED(status)
                                ? std::string("crashed: ") + strsignal(WTERMSIG(status))
                                : "ended with status " + std::to_string(WEXITSTATUS(status));
    report.Error(StatementError(0, {},
                                "the file " + how + " at line " + std::to_string(progress->line) +
                                    "; the rest of it did not run"));
  }
  if (!progress->finished || !options.keep) {
    std::error_code ignored;
    std::filesystem::remove_all(holder, ignored);
  }
  munmap(shared, sizeof(FileProgress));
}

}  // namespace loomsim
