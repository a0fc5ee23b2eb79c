// Captures what is written to the process's standard output (file descriptor 1) while it
// lives: the library prints with printf, which the runner cannot intercept otherwise.
#pragma once

#include <string>

namespace loomsim {

class StdoutCapture {
 public:
  // Flushes what was printed before and sends descriptor 1 to a temporary file. When no
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

  int saved_ = -1;     // the original descriptor 1, -1 when not capturing
  int captured_ = -1;  // the temporary file
};

}  // namespace loomsim
