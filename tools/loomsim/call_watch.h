// Watches one call into the library from outside and lists everything it changed, one
// change a line, in this order:
//
//   changes to elements and the script statements the call ran, as they happened
//     + basic#vars.prodType = "EXBP"                       attribute added
//     ~ basic#ePTKWPageMediaType.value = "Thick1" (was "PLAIN")
//     - basic#A6.hidden (was "true")                       attribute removed
//     + <menuitem value="A"> added to basic#list/menupopup[1]
//     - <menuitem value="A"> removed from basic#list/menupopup[1]
//     > script "rule rul_ChangePrintJob;" -> rule rul_ChangePrintJob, 1 statement(s)
//     (and whatever a facility notes through Scenario::NoteChange)
//   settings values (settings_changes.h), user tree first, then the device tree
//   files written or removed (file_snapshot.h)
//   - registry user "Software\Spindle\Drv"             a registry key deleted (or + added)
//   > printed "value 5\n"                                  the standard output
//   ! message "text"                                       a message box
//   ! filedialog save flags 0x1802 -> cancelled            a common file dialog
//
// It also fills the scenario's LastCall with the script statements, the printed text and
// the message boxes and file dialogs, for the expectations.
//
// The documents, the settings trees and the host's file writes report their changes as
// they happen; only the directory tree is walked, reading each file's status.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "refhost/change_observer.h"
#include "tools/loomsim/file_snapshot.h"
#include "tools/loomsim/settings_changes.h"
#include "tools/loomsim/stdout_capture.h"

namespace loomsim {

class Scenario;

// Appends a line for each registry key of the current user's hive that is in `before`
// only ("- registry user ...") or in `after` only ("+ ..."), written as the registry
// statements write paths.
void DiffRegistry(std::vector<std::u16string> before, std::vector<std::u16string> after,
                  std::vector<std::string>& lines);

class CallWatch final : public refhost::ChangeObserver {
 public:
  // Notes the files and starts listening and capturing.
  explicit CallWatch(Scenario& scenario);
  ~CallWatch() override;
  CallWatch(const CallWatch&) = delete;
  CallWatch& operator=(const CallWatch&) = delete;

  // Stops watching and returns the lines of every change.
  std::vector<std::string> Finish();

  void onChange(const refhost::Change& change) override;

 private:
  void Stop();
  void NoteDocumentChange(const refhost::Change& change);

  Scenario& scenario_;
  SettingsChanges user_;
  SettingsChanges device_;
  std::shared_ptr<const FileSnapshot> files_;
  std::vector<std::filesystem::path> filesWritten_;
  std::vector<std::u16string> registryKeys_;
  std::size_t scriptsBefore_;
  std::size_t fileDialogsBefore_;
  bool watching_ = true;
  StdoutCapture capture_;  // last: starts after the files are noted
};

}  // namespace loomsim
