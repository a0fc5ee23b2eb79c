// The simulated logon session behind host/os.h's Loom::OS::isUserAdministrator and
// Loom::OS::topLevelWindowClassName: whether the current user has administrator rights,
// and the class name of the top-level window that holds the sheet's windows (a property
// sheet opened from the printers folder sits in a window of a class with "StubWindow" in
// its name; one opened from an application does not).
//
// Tests and the scenario runner set it (`administrator yes|no`, `windowclass "NAME"`) and
// reset() it before each scenario: no administrator, class "". What the library asked is
// recorded for inspection.
#pragma once

#include <string>
#include <vector>

#include "host/os.h"

namespace refhost {

class UserSession {
 public:
  void reset() { *this = UserSession(); }

  void setAdministrator(bool administrator) { administrator_ = administrator; }
  bool administrator() const { return administrator_; }
  // The class of the top-level window above every window of the sheet.
  void setWindowClass(std::u16string name) { windowClass_ = std::move(name); }

  // Answers of the host/os.h services, recorded.
  bool askAdministrator();
  std::u16string askWindowClass(Loom::OS::WindowHandle window);

  // How often the administrator test ran; every window whose top-level class was asked.
  int administratorQueries() const { return administratorQueries_; }
  const std::vector<Loom::OS::WindowHandle>& windowClassQueries() const {
    return windowClassQueries_;
  }

 private:
  bool administrator_ = false;
  std::u16string windowClass_;
  int administratorQueries_ = 0;
  std::vector<Loom::OS::WindowHandle> windowClassQueries_;
};

UserSession& userSession();

}  // namespace refhost
