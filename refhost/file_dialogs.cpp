// The simulated common file dialogs.
#include "refhost/file_dialogs.h"

namespace refhost {

void FileDialogs::reset() {
  queued_.clear();
  shown_.clear();
}

FileDialogAnswer FileDialogs::show(const Loom::OS::FileDialogRequest& request) {
  FileDialogAnswer answer;
  if (!queued_.empty()) {
    answer = std::move(queued_.front());
    queued_.pop_front();
  }
  shown_.push_back({request.kind, request.owner != nullptr,
                    std::u16string(request.title), std::u16string(request.filter),
                    std::u16string(request.initialDirectory),
                    std::u16string(request.defaultExtension), request.flags, answer});
  return answer;
}

FileDialogs& fileDialogs() {
  static FileDialogs dialogs;
  return dialogs;
}

}  // namespace refhost

namespace Loom::OS {

FileDialogResult runFileDialog(const FileDialogRequest& request, wstring& path) {
  const refhost::FileDialogAnswer answer = refhost::fileDialogs().show(request);
  if (answer.result == FileDialogResult::kChosen) path.assign(answer.path.begin(), answer.path.end());
  return answer.result;
}

}  // namespace Loom::OS
