#include "tools/loomsim/stdout_capture.h"

#include <unistd.h>

#include <cstdio>
#include <iostream>

namespace loomsim {
namespace {

void FlushEverything() {
  std::cout.flush();
  std::fflush(stdout);
}

}  // namespace

StdoutCapture::StdoutCapture() {
  FlushEverything();
  std::FILE* file = std::tmpfile();
  if (file == nullptr) return;
  captured_ = dup(fileno(file));
  std::fclose(file);  // the duplicate keeps the (already unlinked) file open
  saved_ = dup(STDOUT_FILENO);
  if (captured_ < 0 || saved_ < 0 || dup2(captured_, STDOUT_FILENO) < 0) Restore();
}

StdoutCapture::~StdoutCapture() { Restore(); }

void StdoutCapture::Restore() {
  if (saved_ >= 0) {
    FlushEverything();
    dup2(saved_, STDOUT_FILENO);
    close(saved_);
    saved_ = -1;
  }
  if (captured_ >= 0) {
    close(captured_);
    captured_ = -1;
  }
}

std::string StdoutCapture::Finish() {
  if (saved_ < 0) {
    Restore();
    return {};
  }
  FlushEverything();
  dup2(saved_, STDOUT_FILENO);
  close(saved_);
  saved_ = -1;
  std::string printed;
  char buffer[4096];
  // lseek and read rather than pread, which Windows' C library lacks.
  if (lseek(captured_, 0, SEEK_SET) == 0) {
    for (int n; (n = static_cast<int>(read(captured_, buffer, sizeof buffer))) > 0;) {
      printed.append(buffer, static_cast<std::size_t>(n));
    }
  }
  Restore();
  return printed;
}

}  // namespace loomsim
