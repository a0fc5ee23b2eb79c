// The per-printer settings file "wlk.xml": the private print password ("PrivPrint"/"pwd")
// and the job's nick name ("NICKNAME"/"ePTKWJobAuthentication_NickName"), kept per printer
// in a folder of the user directory named after the printer's port.
//
// The file is the host's settings document. It is found through the document's user
// directory and the printer named by its property "loom.driver.name"; the job types
// object ("xcompart") and the input validation object read and write it here.
#pragma once

#include <optional>
#include <string_view>

#include "core/dispatch.h"
#include "host/file.h"
#include "host/loom_base.h"

namespace spindle {

// The printer folder's name: the port name with each of \ / : * ? " < > written as "%"
// and its code in upper-case hexadecimal ("IP_10.0.0.1:9100" -> "IP_10.0.0.1%3A9100").
Loom::wstring PrinterFolderName(std::u16string_view portName);

// The path of "wlk.xml" for the printer of `doc`; nothing when the document has no
// properties or no driver name.
std::optional<Loom::File> PrinterFilePath(const DocPtr& doc);
// The printer folder that holds it, by the same rules.
std::optional<Loom::File> PrinterFolder(const DocPtr& doc);

// The value of section/key in the printer's file; nothing when the file, the section or
// the key is missing. Reading never creates the file.
std::optional<Loom::string> ReadPrinterFile(const DocPtr& doc, std::string_view section,
                                            std::string_view key);

// Sets section/key in the printer's file, keeping the rest of it. The file is created in
// an existing printer folder when missing; false when it cannot be written.
bool WritePrinterFile(const DocPtr& doc, std::string_view section, std::string_view key,
                      std::string_view value);

}  // namespace spindle
