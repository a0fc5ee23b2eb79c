// Zip archives of the reference host (Loom::Services::Archive on libzip): the driver's UI
// archive and the export files.
//
// An archive's file is read into memory when it is opened, and each member is inflated
// only when it is read, extracted or saved (so a member's recorded sizes can be judged
// before it is inflated); write and remove change only that copy, and save() writes the
// whole archive back to its file atomically (through
// refhost/file_io.h), so a failed save leaves the file exactly as it was. Member names are
// stored in UTF-8 and compared exactly (case-sensitive, '\' and '/' are different
// characters). extract and extractAll refuse a member name that would land outside the
// target directory (an absolute name, a drive letter, or a ".." step, with either slash)
// before they write anything.
//
// ArchiveBackingStoreIO (host/settings.h) is implemented here too: a settings document
// stored as one member.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/settings.h"

namespace refhost {

class ZipArchive final : public Loom::Services::Archive {
 public:
  // Reads the archive at `path`; throws ArchiveError when it is missing or not a zip.
  static Loom::SmartPtr<ZipArchive> Open(const Loom::File& path);
  // An empty archive for `path`, which need not exist yet: save() creates it.
  static Loom::SmartPtr<ZipArchive> Create(const Loom::File& path);

  const Loom::File& path() const override { return path_; }
  bool exists(const Loom::wstring& member) const override;
  // In archive order; members written since are at the end.
  Loom::vector<Loom::wstring> members() const override;
  MemberSize memberSize(const Loom::wstring& member) const override;
  Loom::string read(const Loom::wstring& member) const override;
  void write(const Loom::wstring& member, const Loom::string& bytes) override;
  void remove(const Loom::wstring& member) override;
  void save() override;
  void extract(const Loom::wstring& member, const Loom::File& directory) const override;
  void extractAll(const Loom::File& directory) const override;

  // Tells one content of this archive from the next: it changes with every write and
  // remove, and no two archives of the process ever share one, so a number recorded
  // earlier matches only the same archive with the same members.
  std::uint64_t version() const { return version_; }

 private:
  struct Member {
    Loom::wstring name;
    MemberSize size;
    // Inflated on first use from the opened file (entry `index`), or written since.
    mutable std::optional<std::string> bytes;
    std::uint64_t index = 0;
    bool changed = false;  // written since open (or new): saved from `bytes`
  };
  struct OpenedFile;

  explicit ZipArchive(Loom::File path);
  ~ZipArchive() override;

  const Member* find(const Loom::wstring& name) const;
  const std::string& bytesOf(const Member& member) const;

  Loom::File path_;
  std::vector<Member> members_;
  std::unique_ptr<OpenedFile> opened_;  // the file as read at open; null for a new archive
  std::uint64_t version_;
};

// Fault injection: the next save() of any archive throws ArchiveError without touching
// its file, as a full disk would.
void failNextArchiveSave();

// For set-up by tests and the scenario runner: writes `bytes` as `member` of the archive
// at `path` (created when missing) and saves it. Throws ArchiveError.
void WriteArchiveMember(const Loom::File& path, std::u16string_view member, std::string_view bytes);

}  // namespace refhost
