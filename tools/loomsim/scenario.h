// The state of one scenario file while it runs, shared by every statement's action.
//
// Each file gets a fresh property sheet of the reference host and a fresh temporary
// directory tree (sandbox.h). The properties "loom.user.path", "loom.driver.path" and
// "loom.allusers.path" and the documents' root, user and all-users directories point into
// the tree until the scenario sets them otherwise. The scenario keeps no counted
// reference between statements, so what the host counts as held is what the library
// holds.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/settings.h"
#include "refhost/file_dialogs.h"
#include "refhost/host_ref.h"
#include "refhost/sheet.h"
#include "tools/loomsim/file_watch.h"
#include "tools/loomsim/library_call.h"
#include "tools/loomsim/message_boxes.h"
#include "tools/loomsim/report.h"
#include "tools/loomsim/sandbox.h"
#include "tools/loomsim/script_executor.h"

namespace loomsim {

// What the last call did, for the expectations that look at it.
struct LastCall {
  bool made = false;
  bool result = false;
  std::optional<std::string> exception;  // the message of an exception that escaped it
  std::optional<std::string> unmatched;  // why it matched no method, when it did not
  std::vector<std::string> scripts;      // statements run through doString during it
  std::string printed;                   // what the library wrote to the standard output
  std::vector<std::string> messages;     // the texts of the message boxes it showed
  std::vector<std::string> dialogs;      // the dialogs it opened: "FILE.xul" title "TEXT"
  std::vector<refhost::FileDialogRecord> fileDialogs;  // the file dialogs it showed
};

// Thrown by an action whose statement cannot be set up (a bad XUL block, a missing file):
// it stops the file. what() says why.
class SetupError : public std::runtime_error {
 public:
  explicit SetupError(const std::string& reason) : std::runtime_error(reason) {}
};

// `path` as the host writes paths (UTF-16); throws SetupError when it is not UTF-8.
std::u16string HostPath(const std::filesystem::path& path);

class Scenario {
 public:
  // `file` is the scenario file; relative paths in it are taken from its directory.
  Scenario(ObjectFinder finder, std::filesystem::path file, Report& report);
  ~Scenario();
  Scenario(const Scenario&) = delete;
  Scenario& operator=(const Scenario&) = delete;

  ObjectFinder finder() const { return finder_; }
  refhost::Sheet& sheet() { return sheet_; }
  Sandbox& sandbox() { return sandbox_; }
  // The files of the sandbox, as the calls' change reports see them.
  FileWatch& files() { return files_; }
  Report& report() { return report_; }
  MessageBoxes& messageBoxes() { return messageBoxes_; }
  // The directory of the scenario file.
  std::filesystem::path directory() const { return file_.parent_path(); }

  // The statement that runs now: its line and its echo.
  void BeginStatement(int line, std::string echo);
  int line() const { return line_; }
  const std::string& echo() const { return echo_; }
  // The result of the running expectation: passed, or failed with what was found
  // instead ("FAIL file:line: expected <echo without 'expect'>, got <got>").
  void Check(bool passed, std::string_view got);
  // A failure of the running statement, in its own words.
  void Fail(std::string_view message) { report_.Fail(line_, message); }

  // Documents by scenario name; the first one is also "document". AddDocument throws
  // SetupError for a name given twice.
  void AddDocument(const std::string& name, refhost::Document& document);
  // The document `name` ("document" for the first), or null.
  refhost::Document* FindDocument(std::string_view name) const;
  // The scenario name of `document`; "?" for one the scenario did not load.
  std::string NameOf(const refhost::Document* document) const;

  // Makes `archive` the UI archive (getArchive) of every document, also of those loaded
  // later.
  void SetUiArchive(Loom::SmartPtr<Loom::Services::Archive> archive);

  void DefineRule(const std::string& name, std::string body) { rules_[name] = std::move(body); }
  // The statements of rule `name`, or null when the scenario defines none.
  const std::string* Rule(std::string_view name) const;

  LastCall& lastCall() { return lastCall_; }
  // The last call for the running check; null, with the check failed, before any call.
  const LastCall* LastCallForCheck();
  // The document a running call was made for: its first document argument, or the
  // document of its first element; the first document when it has neither. Script
  // statements the library runs are resolved in it.
  refhost::Document* callingDocument() const;
  void setCallingDocument(refhost::Document* document) { callingDocument_ = document; }

  // While a call is watched: adds one line to its list of changes and returns its
  // position, which AmendNote can extend. Facilities note here what their simulated
  // services saw the library do.
  std::size_t NoteChange(std::string line);
  void AmendNote(std::size_t position, std::string_view text);
  // Starts collecting noted changes (false: stops and hands them over).
  void StartNoting() { noting_ = true; }
  std::vector<std::string> StopNoting();

  // A fault in a call the library made back through the script environment; the call
  // that led to it stops the file.
  void NoteCrash(std::string fault) { crash_ = std::move(fault); }
  const std::optional<std::string>& crash() const { return crash_; }

  // References counted as held when the file started: `expect refs balanced` compares
  // with it.
  long referenceBaseline() const { return referenceBaseline_; }

 private:
  ObjectFinder finder_;
  std::filesystem::path file_;
  Report& report_;
  Sandbox sandbox_;
  FileWatch files_{sandbox_.root()};
  refhost::Sheet sheet_;
  MessageBoxes messageBoxes_;
  ScriptExecutor executor_;
  int line_ = 0;
  std::string echo_;
  std::vector<std::pair<std::string, refhost::Document*>> documents_;
  refhost::HostRef<Loom::Services::Archive> uiArchive_;
  std::map<std::string, std::string, std::less<>> rules_;
  LastCall lastCall_;
  refhost::Document* callingDocument_ = nullptr;
  bool noting_ = false;
  std::vector<std::string> notes_;
  long referenceBaseline_ = 0;
  std::optional<std::string> crash_;
};

}  // namespace loomsim
