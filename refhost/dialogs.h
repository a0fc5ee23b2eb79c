// The dialog documents the library opens (Loom::XUL::openDialog).
//
// The reference host shows no window: it records each dialog with its file name and
// title exactly as the library passed them, and tells a listener (the scenario runner
// reports each with the call that opened it). reset() empties the record for a fresh
// scenario.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace refhost {

struct OpenedDialog {
  std::u16string fileName;
  std::u16string title;
};

class Dialogs {
 public:
  using Listener = std::function<void(const OpenedDialog&)>;

  // Records the dialog and tells the listener; the dialog opens (true).
  bool open(OpenedDialog dialog);
  const std::vector<OpenedDialog>& opened() const { return opened_; }
  // Null: nobody listens.
  void setListener(Listener listener) { listener_ = std::move(listener); }
  // Nothing recorded, nobody listening.
  void reset();

 private:
  std::vector<OpenedDialog> opened_;
  Listener listener_;
};

// The one record of opened dialogs.
Dialogs& dialogs();

}  // namespace refhost
