// Text a scenario hands the runner in files and blocks (the scenario file, XUL pages,
// settings files): read whole, or stopped with the system's or the XML parser's reason,
// so an author sees "No such file or directory" or the parser's message and line.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace loomsim {

// The system's reason `file` cannot be read ("No such file or directory").
std::string ReadFailure(const std::filesystem::path& file);

// The whole of `file`; throws SetupError ("cannot read FILE: REASON") when it cannot be
// read.
std::string ReadSourceFile(const std::filesystem::path& file);

// Throws SetupError ("SOURCE is no XML at line N: MESSAGE") unless `xml` is well-formed;
// `firstLine` is the line of `source` that the text's first line stands on.
void RequireWellFormedXml(std::string_view xml, const std::string& source, int firstLine);

}  // namespace loomsim
