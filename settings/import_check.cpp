#include "settings/import_check.h"

#include <cstdint>

namespace spindle::settings_internal {

namespace {

constexpr std::uint64_t kMaxMemberSize = 64ull * 1024 * 1024;
constexpr std::uint64_t kMaxCompressionRatio = 100;

bool IsSafeName(std::u16string_view name) {
  if (name.empty() || name.front() == u'/') return false;
  if (name.find(u'\\') != std::u16string_view::npos) return false;
  if (name.size() >= 2 && name[1] == u':') return false;  // "C:..." names a drive
  for (std::size_t start = 0; start <= name.size();) {
    const std::size_t slash = std::min(name.find(u'/', start), name.size());
    if (name.substr(start, slash - start) == u"..") return false;
    start = slash + 1;
  }
  return true;
}

bool IsSafeSize(const Loom::Services::Archive::MemberSize& size) {
  if (size.size > kMaxMemberSize) return false;
  // size / storedSize > 100, without dividing (an empty member stores in 0 bytes).
  return size.size <= size.storedSize * kMaxCompressionRatio || size.size == 0;
}

}  // namespace

bool ArchiveMayBeImported(const Loom::SmartPtr<Loom::Services::Archive>& archive) {
  for (const Loom::wstring& member : archive->members()) {
    if (!IsSafeName(member) || !IsSafeSize(archive->memberSize(member))) return false;
  }
  const Loom::wstring settings(kExportedSettingsMember);
  if (!archive->exists(settings)) return false;
  // Read through a scratch tree: a member that is no settings tree reads as nothing.
  Loom::Services::PersistentSettings scratch;
  scratch.setBackingStoreIO(Loom::SmartPtr<Loom::Services::BackingStoreIO>(
      new Loom::Services::ArchiveBackingStoreIO(archive, settings, 1)));
  return scratch.loadSettings();
}

}  // namespace spindle::settings_internal
