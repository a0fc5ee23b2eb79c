#include "tools/loomsim/xml_check.h"

#include "refhost/dom.h"
#include "tools/loomsim/scenario.h"

namespace loomsim {

void RequireWellFormedXml(std::string_view xml, const std::string& source, int firstLine) {
  std::string message;
  int line = 0;
  if (refhost::ParseXml(xml, &message, &line)) return;
  throw SetupError{source + " is no XML at line " + std::to_string(firstLine + line - 1) + ": " +
                   message};
}

}  // namespace loomsim
