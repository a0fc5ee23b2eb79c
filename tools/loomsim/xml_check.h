// Settings text a scenario hands the host must at least be XML; when it is not, the
// scenario stops with the XML parser's own message and the line, as a bad XUL block does.
#pragma once

#include <string>
#include <string_view>

namespace loomsim {

// Throws SetupError ("SOURCE is no XML at line N: MESSAGE") unless `xml` is well-formed;
// `firstLine` is the line of `source` that the text's first line stands on.
void RequireWellFormedXml(std::string_view xml, const std::string& source, int firstLine);

}  // namespace loomsim
