#include "core/user_modes.h"

#include <string_view>

#include "host/os.h"

namespace spindle {

bool IsAdministrator() { return Loom::OS::isUserAdministrator(); }

bool IsControlPanel(const DocPtr& doc) {
  if (!doc || !IsAdministrator()) return false;
  constexpr std::u16string_view kPrintersFolderWindow = u"StubWindow";
  const Loom::wstring windowClass =
      Loom::OS::topLevelWindowClassName(Loom::XUL::getXULRootHWND(doc.get()));
  return windowClass.find(kPrintersFolderWindow) != Loom::wstring::npos;
}

}  // namespace spindle
