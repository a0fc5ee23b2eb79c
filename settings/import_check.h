// Whether a configuration archive may be imported: every member is judged before anything
// is written, so a refused archive changes nothing.
//
// A member is refused when its name could land outside the user directory (empty,
// absolute, with a drive letter, a backslash or a ".." step), when it would inflate to
// more than 64 MiB, or when it is compressed more than 100:1 (a zip bomb). The archive
// must carry "Zuconf_export.xml", and that member must be a settings tree.
#pragma once

#include <string_view>

#include "host/settings.h"

namespace spindle::settings_internal {

// The member that carries the exported settings tree.
inline constexpr std::u16string_view kExportedSettingsMember = u"Zuconf_export.xml";

// True when every member of `archive` may be extracted and the settings member holds a
// settings tree. Throws ArchiveError only as the archive itself does.
bool ArchiveMayBeImported(const Loom::SmartPtr<Loom::Services::Archive>& archive);

}  // namespace spindle::settings_internal
