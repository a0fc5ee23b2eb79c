#include "tools/loomsim/call_watch.h"

#include <algorithm>
#include <iterator>

#include "refhost/document.h"
#include "refhost/file_dialogs.h"
#include "refhost/file_io.h"
#include "refhost/user_registry.h"
#include "tools/loomsim/element_label.h"
#include "tools/loomsim/file_dialogs.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {

void DiffRegistry(std::vector<std::u16string> before, std::vector<std::u16string> after,
                  std::vector<std::string>& lines) {
  std::sort(before.begin(), before.end());
  std::sort(after.begin(), after.end());
  std::vector<std::u16string> gone, added;
  std::set_difference(before.begin(), before.end(), after.begin(), after.end(),
                      std::back_inserter(gone));
  std::set_difference(after.begin(), after.end(), before.begin(), before.end(),
                      std::back_inserter(added));
  // Written as the registry statements write paths: quoted, backslashes as they stand.
  const auto path = [](const std::u16string& key) { return "\"" + NarrowText(key) + "\""; };
  for (const auto& key : gone) lines.push_back("- registry user " + path(key));
  for (const auto& key : added) lines.push_back("+ registry user " + path(key));
}

CallWatch::CallWatch(Scenario& scenario)
    : scenario_(scenario),
      user_("user", scenario.sheet().window().getSettings()),
      device_("device", scenario.sheet().window().getDevSettings()),
      files_(scenario.files().Current()),
      registryKeys_(refhost::userRegistryKeys()),
      scriptsBefore_(scenario.sheet().scriptEnv().statements().size()),
      fileDialogsBefore_(refhost::fileDialogs().shown().size()) {
  scenario_.messageBoxes().Take();  // boxes of earlier set-up are not this call's
  scenario_.StartNoting();
  scenario_.sheet().setChangeObserver(this);
}

CallWatch::~CallWatch() { Stop(); }

void CallWatch::Stop() {
  if (!watching_) return;
  watching_ = false;
  scenario_.sheet().setChangeObserver(nullptr);
}

void CallWatch::onChange(const refhost::Change& change) {
  using Kind = refhost::Change::Kind;
  switch (change.kind) {
    case Kind::kSettingAdded:
    case Kind::kSettingChanged:
    case Kind::kSettingRemoved:
      user_.Note(change);
      device_.Note(change);
      break;
    case Kind::kFileWritten:
    case Kind::kFileRemoved:
      filesWritten_.push_back(refhost::PathFromUtf8(change.file));
      break;
    default:
      NoteDocumentChange(change);
      break;
  }
}

void CallWatch::NoteDocumentChange(const refhost::Change& change) {
  using Kind = refhost::Change::Kind;
  const std::string label = ElementLabel(scenario_, *change.element);
  const std::string attribute = "." + NarrowText(change.attribute);
  switch (change.kind) {
    case Kind::kAttributeAdded:
      scenario_.NoteChange("+ " + label + attribute + " = " + ReportValue(change.newValue));
      break;
    case Kind::kAttributeChanged:
      scenario_.NoteChange("~ " + label + attribute + " = " + ReportValue(change.newValue) +
                           " (was " + ReportValue(change.oldValue) + ")");
      break;
    case Kind::kAttributeRemoved:
      scenario_.NoteChange("- " + label + attribute + " (was " + ReportValue(change.oldValue) +
                           ")");
      break;
    case Kind::kElementAdded:
      scenario_.NoteChange("+ " + StartTag(*change.element) + " added to " +
                           ElementLabel(scenario_, *change.parent));
      break;
    case Kind::kElementRemoved:
      scenario_.NoteChange("- " + StartTag(*change.element) + " removed from " +
                           ElementLabel(scenario_, *change.parent));
      break;
    default:
      break;
  }
}

std::vector<std::string> CallWatch::Finish() {
  LastCall& last = scenario_.lastCall();
  last.printed = capture_.Finish();
  Stop();
  std::vector<std::string> lines = scenario_.StopNoting();
  refhost::Window& window = scenario_.sheet().window();
  user_.Report(window.getSettings(), lines);
  device_.Report(window.getDevSettings(), lines);
  const auto files = scenario_.files().Current(filesWritten_);
  if (files != files_) DiffFiles(*files_, *files, lines);
  DiffRegistry(registryKeys_, refhost::userRegistryKeys(), lines);

  const auto& statements = scenario_.sheet().scriptEnv().statements();
  last.scripts.clear();
  for (std::size_t i = scriptsBefore_; i < statements.size(); ++i) {
    last.scripts.push_back(statements[i].text);
  }
  if (!last.printed.empty()) lines.push_back("> printed " + ReportValue(last.printed));
  last.messages = scenario_.messageBoxes().Take();
  for (const std::string& message : last.messages)
    lines.push_back("! message " + ReportValue(message));
  const std::vector<refhost::FileDialogRecord>& dialogs = refhost::fileDialogs().shown();
  last.fileDialogs.assign(dialogs.begin() + static_cast<std::ptrdiff_t>(fileDialogsBefore_),
                          dialogs.end());
  for (const auto& dialog : last.fileDialogs)
    lines.push_back("! filedialog " + FileDialogText(dialog));
  return lines;
}

}  // namespace loomsim
