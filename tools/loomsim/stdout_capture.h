// Captures what is written to the process's standard output (file descriptor 1) while it
// lives: the library prints with printf, which the runner cannot intercept otherwise.
// Every capture of a run writes to the same temporary file, made once, from where the
// file ended when the capture began.
#pragma once

#include <sys/types.h>

#include <string>

namespace loomsim {

class StdoutCapture {
 public:
  // Flushes what was printed before and sends descriptor 1 to the temporary file. When no
  // temporary file can be made, nothing is captured and the output goes where it went.
  StdoutCapture();
  // Puts descriptor 1 back if Finish was not called.
  ~StdoutCapture();
  StdoutCapture(const StdoutCapture&) = delete;
  StdoutCapture& operator=(const StdoutCapture&) = delete;

  // Flushes, puts descriptor 1 back and returns what was written meanwhile.
  std::string Finish();

 private:
  void Restore();

  int saved_ = -1;   // the original descriptor 1, -1 when not capturing
  off_t start_ = 0;  // where this capture's output begins in the temporary file
};

}  // namespace loomsim
