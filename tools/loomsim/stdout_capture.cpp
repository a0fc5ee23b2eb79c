#include "tools/loomsim/stdout_capture.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>

namespace loomsim {
namespace {

// Past this much the shared file starts again from its beginning.
constexpr off_t kRewindAfter = 1 << 20;

void FlushEverything() {
  std::cout.flush();
  std::fflush(stdout);
}

// The temporary file every capture writes to, made once per run; -1 when none can be.
int CaptureFile() {
  static const int descriptor = [] {
    std::FILE* file = std::tmpfile();
    if (file == nullptr) return -1;
    const int duplicate = dup(fileno(file));
    std::fclose(file);  // the duplicate keeps the (already unlinked) file open
    return duplicate;
  }();
  return descriptor;
}

}  // namespace

StdoutCapture::StdoutCapture() {
  const int file = CaptureFile();
  if (file < 0) return;
  FlushEverything();
  start_ = lseek(file, 0, SEEK_CUR);
  if (start_ > kRewindAfter && ftruncate(file, 0) == 0) start_ = lseek(file, 0, SEEK_SET);
  saved_ = dup(STDOUT_FILENO);
  if (start_ < 0 || saved_ < 0 || dup2(file, STDOUT_FILENO) < 0) Restore();
}

StdoutCapture::~StdoutCapture() { Restore(); }

void StdoutCapture::Restore() {
  if (saved_ < 0) return;
  FlushEverything();
  dup2(saved_, STDOUT_FILENO);
  close(saved_);
  saved_ = -1;
}

std::string StdoutCapture::Finish() {
  if (saved_ < 0) return {};
  Restore();
  std::string printed;
  char buffer[4096];
  // lseek and read rather than pread, which Windows' C library lacks. Reading to the end
  // leaves the shared offset where the next capture begins.
  if (lseek(CaptureFile(), start_, SEEK_SET) == start_) {
    for (int n; (n = static_cast<int>(read(CaptureFile(), buffer, sizeof buffer))) > 0;) {
      printed.append(buffer, static_cast<std::size_t>(n));
    }
  }
  return printed;
}

}  // namespace loomsim
