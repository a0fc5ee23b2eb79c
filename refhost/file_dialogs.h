// The simulated common file dialogs (GetOpenFileNameW / GetSaveFileNameW) behind
// Loom::OS::runFileDialog.
//
// A test or scenario queues the answers the next dialogs give, in order: a path as
// chosen (the dialog adds no extension, and the file need not exist), cancelled, or
// failed (CommDlgExtendedError non-zero). A dialog with nothing queued is cancelled, as a
// user closing it would. Every request is recorded with its answer for inspection.
// reset() empties the queue and the record for a fresh scenario.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "host/os.h"

namespace refhost {

struct FileDialogAnswer {
  Loom::OS::FileDialogResult result = Loom::OS::FileDialogResult::kCancelled;
  std::u16string path;  // the chosen file, for kChosen
};

// One dialog shown: what the library asked for and what the dialog answered.
struct FileDialogRecord {
  Loom::OS::FileDialogKind kind = Loom::OS::FileDialogKind::kOpen;
  bool owned = false;  // whether the request named an owner window
  std::u16string title;
  std::u16string filter;
  std::u16string initialDirectory;
  std::u16string defaultExtension;
  unsigned flags = 0;
  FileDialogAnswer answer;
};

class FileDialogs {
 public:
  void reset();
  void queue(FileDialogAnswer answer) { queued_.push_back(std::move(answer)); }
  std::size_t queued() const { return queued_.size(); }
  // Every dialog shown, in order.
  const std::vector<FileDialogRecord>& shown() const { return shown_; }

  // Shows a dialog for `request`: takes the next queued answer and records both.
  FileDialogAnswer show(const Loom::OS::FileDialogRequest& request);

 private:
  std::deque<FileDialogAnswer> queued_;
  std::vector<FileDialogRecord> shown_;
};

FileDialogs& fileDialogs();

}  // namespace refhost
