// The simulated logon session: administrator rights and the sheet's top-level window.
#include "refhost/user_session.h"

namespace refhost {

bool UserSession::askAdministrator() {
  ++administratorQueries_;
  return administrator_;
}

std::u16string UserSession::askWindowClass(Loom::OS::WindowHandle window) {
  windowClassQueries_.push_back(window);
  // No window has no top-level window, and so no class.
  return window == nullptr ? std::u16string() : windowClass_;
}

UserSession& userSession() {
  static UserSession session;
  return session;
}

}  // namespace refhost

namespace Loom::OS {

bool isUserAdministrator() { return refhost::userSession().askAdministrator(); }

wstring topLevelWindowClassName(WindowHandle window) {
  const std::u16string name = refhost::userSession().askWindowClass(window);
  return wstring(name.begin(), name.end());
}

}  // namespace Loom::OS
