#include "refhost/dialogs.h"

#include "host/xul.h"

namespace refhost {

bool Dialogs::open(OpenedDialog dialog) {
  opened_.push_back(std::move(dialog));
  if (listener_) listener_(opened_.back());
  return true;
}

void Dialogs::reset() {
  opened_.clear();
  listener_ = nullptr;
}

Dialogs& dialogs() {
  static Dialogs* instance = new Dialogs();  // never destroyed: used until the process ends
  return *instance;
}

}  // namespace refhost

namespace Loom::XUL {

bool openDialog(xXULDoc* parent, const wstring& fileName, const wstring& title) {
  // A dialog needs the document that opens it, as a modal window needs its owner.
  if (parent == nullptr) return false;
  return refhost::dialogs().open({std::u16string(fileName), std::u16string(title)});
}

}  // namespace Loom::XUL
