// The simulated common file dialogs (refhost/file_dialogs.h): the answers the next open or
// save dialogs give, and what the last call's dialogs asked for. Each file starts with no
// answer queued, so a dialog the scenario did not prepare for is cancelled.
//
//   filedialog "PATH"                 chosen: the path as written (relative to the file)
//   filedialog user:"sub/conf.cfu"    chosen: a file of the scenario's directory tree
//   filedialog cancel | fail          cancelled, or failed (CommDlgExtendedError non-zero)
//   expect filedialog save flags 0x1802 title "Export"
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

#include "refhost/file_dialogs.h"
#include "tools/loomsim/file_dialogs.h"
#include "tools/loomsim/grammar.h"
#include "tools/loomsim/host_text.h"
#include "tools/loomsim/place_ref.h"
#include "tools/loomsim/scenario.h"
#include "tools/loomsim/text_values.h"

namespace loomsim {
namespace {

using Loom::OS::FileDialogKind;
using Loom::OS::FileDialogResult;

std::string FlagsText(unsigned flags) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%04X", flags);
  return text;
}

std::string_view KindText(FileDialogKind kind) {
  return kind == FileDialogKind::kOpen ? "open" : "save";
}

// The answer as the runner queues it: a path resolved when the dialog is answered, from
// the file's directory or a place of its tree.
Parsed ParseFileDialog(StatementInput& input) {
  Cursor& cursor = input.cursor();
  if (cursor.Accept("cancel")) {
    return {"filedialog cancel", [](Scenario&) {
              refhost::fileDialogs().queue({FileDialogResult::kCancelled, {}});
            }};
  }
  if (cursor.Accept("fail")) {
    return {"filedialog fail",
            [](Scenario&) { refhost::fileDialogs().queue({FileDialogResult::kFailed, {}}); }};
  }
  if (cursor.AtText()) {
    const std::string path = cursor.Text("a quoted path, PLACE:\"path\", cancel or fail");
    if (path.empty()) throw ParseError("a path that is not empty", "\"\"");
    return {"filedialog " + Quote(path), [path](Scenario& scenario) {
              refhost::fileDialogs().queue(
                  {FileDialogResult::kChosen, HostPath(scenario.directory() / path)});
            }};
  }
  const PlaceRef ref = ParsePlaceRef(cursor);
  return {"filedialog " + PlaceRefText(ref), [ref](Scenario& scenario) {
            refhost::fileDialogs().queue(
                {FileDialogResult::kChosen, HostPath(ResolvePlace(scenario.sandbox(), ref))});
          }};
}

// 0x followed by one to eight hexadecimal digits.
unsigned ParseFlags(Cursor& cursor) {
  constexpr std::string_view kWhat = "flags as 0xHHHH";
  const std::string_view written = cursor.Rest();
  const std::string word = cursor.AtName() ? cursor.Name(kWhat) : std::string();
  const bool hex = word.size() > 2 && word.size() <= 10 && word.starts_with("0x") &&
                   word.find_first_not_of("0123456789abcdefABCDEF", 2) == std::string::npos;
  if (!hex) throw ParseError(std::string(kWhat), std::string(written));
  return static_cast<unsigned>(std::stoul(word.substr(2), nullptr, 16));
}

Parsed ParseFileDialogExpectation(StatementInput& input) {
  Cursor& cursor = input.cursor();
  const bool open = cursor.Accept("open");
  if (!open && !cursor.Accept("save")) cursor.Fail("open or save");
  const FileDialogKind kind = open ? FileDialogKind::kOpen : FileDialogKind::kSave;
  std::string echo = "expect filedialog " + std::string(KindText(kind));
  std::optional<unsigned> flags;
  if (cursor.Accept("flags")) {
    flags = ParseFlags(cursor);
    echo += " flags " + FlagsText(*flags);
  }
  std::optional<std::u16string> title;
  if (cursor.Accept("title")) {
    title = WideQuotedText(cursor, "the quoted title");
    echo += " title " + Quote(*title);
  }
  return {echo, [kind, flags, title](Scenario& scenario) {
            const LastCall* last = scenario.LastCallForCheck();
            if (last == nullptr) return;
            std::string got;
            for (const refhost::FileDialogRecord& dialog : last->fileDialogs) {
              if (dialog.kind == kind && (!flags || dialog.flags == *flags) &&
                  (!title || dialog.title == *title)) {
                scenario.Check(true, "");
                return;
              }
              got.append(got.empty() ? "" : "; ").append(FileDialogText(dialog));
            }
            scenario.Check(false, got.empty() ? "no file dialog" : got);
          }};
}

void StartFileDialogs(Scenario&) { refhost::fileDialogs().reset(); }

constexpr StatementForm kForms[] = {
    {"filedialog",
     "filedialog \"PATH\"\nfiledialog PLACE:\"relative/path\"\nfiledialog cancel\n"
     "filedialog fail",
     ParseFileDialog},
    {"expect filedialog", "expect filedialog open|save [flags 0xHHHH] [title \"TEXT\"]",
     ParseFileDialogExpectation},
};

}  // namespace

std::string FileDialogText(const refhost::FileDialogRecord& dialog) {
  std::string text = std::string(KindText(dialog.kind)) + " flags " + FlagsText(dialog.flags);
  if (!dialog.title.empty()) text += " title " + Quote(dialog.title);
  if (!dialog.filter.empty()) text += " filter " + Quote(dialog.filter);
  switch (dialog.answer.result) {
    case FileDialogResult::kChosen:
      return text + " -> chosen";
    case FileDialogResult::kCancelled:
      return text + " -> cancelled";
    case FileDialogResult::kFailed:
      return text + " -> failed";
  }
  return text;
}

extern const Facility kFileDialogFacility{"the common file dialogs", kForms, StartFileDialogs};

}  // namespace loomsim
