// Zip archives on libzip, and the settings store on an archive member.
#include "refhost/archive.h"

#include <utf8.h>
#include <zip.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <optional>
#include <system_error>

#include "refhost/dom.h"
#include "refhost/file_io.h"
#include "refhost/text.h"

namespace refhost {
namespace {

bool g_fail_next_save = false;

// The whole of an empty zip file: its end-of-central-directory record alone. libzip
// writes nothing at all for an archive without members, which no reader would open.
constexpr char kEmptyZip[22] = {'P', 'K', 5, 6};

[[noreturn]] void Fail(std::string_view what, const Loom::File& path, std::string_view why) {
  throw Loom::Services::ArchiveError(
      Loom::string(std::string(what) + " '" + Utf8(path.path()) + "': " + std::string(why)));
}

std::string LibzipMessage(zip_error_t* error) {
  std::string message = zip_error_strerror(error);
  zip_error_fini(error);
  return message;
}

std::string LibzipMessage(zip_t* archive) { return zip_error_strerror(zip_get_error(archive)); }

struct ZipCloser {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using ZipHandle = std::unique_ptr<zip_t, ZipCloser>;

struct SourceFreer {
  void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using SourceHandle = std::unique_ptr<zip_source_t, SourceFreer>;

std::string ReadEntry(zip_t* archive, zip_uint64_t index, std::uint64_t size) {
  zip_file_t* file = zip_fopen_index(archive, index, 0);
  if (file == nullptr) return std::string();
  std::string bytes(size, '\0');
  const zip_int64_t read = zip_fread(file, bytes.data(), size);
  zip_fclose(file);
  if (read < 0 || static_cast<std::uint64_t>(read) != size) return std::string();
  return bytes;
}

// The zip file of `members` (UTF-8 name, bytes), built in memory. Throws ArchiveError
// naming `path`.
// One member to save: its bytes, or an entry of an opened archive copied as stored, so
// members that did not change are never inflated and compressed again.
struct SavedMember {
  std::string name;
  const std::string* bytes;
  zip_t* from;
  zip_uint64_t index;
};

std::string ZipBytes(const std::vector<SavedMember>& members, const Loom::File& path) {
  if (members.empty()) return std::string(kEmptyZip, sizeof kEmptyZip);
  zip_error_t error;
  zip_error_init(&error);
  SourceHandle buffer(zip_source_buffer_create(nullptr, 0, 0, &error));
  if (!buffer) Fail("cannot save archive", path, LibzipMessage(&error));
  ZipHandle archive(zip_open_from_source(buffer.get(), ZIP_TRUNCATE, &error));
  if (!archive) Fail("cannot save archive", path, LibzipMessage(&error));
  zip_error_fini(&error);
  // The archive owns the buffer now; one more reference keeps it past zip_close.
  zip_source_keep(buffer.get());
  for (const SavedMember& member : members) {
    // A whole entry (start 0, length -1) is copied with its compressed data.
    zip_source_t* data =
        member.bytes != nullptr
            ? zip_source_buffer(archive.get(), member.bytes->data(), member.bytes->size(), 0)
            : zip_source_zip(archive.get(), member.from, member.index, 0, 0, -1);
    if (data == nullptr ||
        zip_file_add(archive.get(), member.name.c_str(), data, ZIP_FL_ENC_UTF_8) < 0) {
      if (data != nullptr) zip_source_free(data);
      Fail("cannot save archive", path, LibzipMessage(archive.get()));
    }
  }
  if (zip_close(archive.get()) != 0)
    Fail("cannot save archive", path, LibzipMessage(archive.get()));
  archive.release();  // closed and freed by zip_close

  zip_stat_t stat;
  zip_stat_init(&stat);
  if (zip_source_stat(buffer.get(), &stat) != 0 || zip_source_open(buffer.get()) != 0) {
    Fail("cannot save archive", path, "the built archive cannot be read");
  }
  std::string bytes(stat.size, '\0');
  const zip_int64_t read = zip_source_read(buffer.get(), bytes.data(), stat.size);
  zip_source_close(buffer.get());
  if (read < 0 || static_cast<zip_uint64_t>(read) != stat.size) {
    Fail("cannot save archive", path, "the built archive cannot be read");
  }
  return bytes;
}

// `name` as a relative path with '/' steps, or nothing when it is empty or would leave
// the directory it is extracted to (absolute, a drive letter, a ".." step, no file name).
std::optional<std::filesystem::path> RelativeMemberPath(std::string name) {
  std::replace(name.begin(), name.end(), '\\', '/');
  const std::filesystem::path relative = PathFromUtf8(name);
  const bool driveLetter = name.size() >= 2 && name[1] == ':';
  if (name.empty() || name.front() == '/' || driveLetter || relative.filename().empty()) {
    return std::nullopt;
  }
  for (const std::filesystem::path& step : relative) {
    if (step == "..") return std::nullopt;
  }
  return relative;
}

// The path below `directory` that `member` names, or nothing when it would leave it.
std::optional<std::filesystem::path> ExtractionTarget(const Loom::wstring& member,
                                                      const Loom::File& directory) {
  const std::optional<std::filesystem::path> relative = RelativeMemberPath(Utf8(member));
  if (!relative) return std::nullopt;
  return NativePath(directory) / *relative;
}

// Throws ArchiveError for an entry no host should take from an archive: an empty or
// non-UTF-8 name, a name that would leave the extraction directory, a directory entry
// with content. True for a (harmless) directory entry, which holds no member.
bool CheckEntry(const zip_stat_t& stat, const Loom::File& path) {
  const std::string_view name = stat.name;
  if (name.empty()) Fail("refusing archive", path, "a member has an empty name");
  if (!utf8::is_valid(name.begin(), name.end())) {
    Fail("refusing archive", path, "a member name is not UTF-8");
  }
  const bool directory = name.ends_with('/') || name.ends_with('\\');
  if (directory && stat.size != 0) {
    Fail("refusing archive", path, "directory entry '" + std::string(name) + "' has content");
  }
  if (!RelativeMemberPath(std::string(directory ? name.substr(0, name.size() - 1) : name))) {
    Fail("refusing archive", path,
         "member '" + std::string(name) + "' would leave the directory it is extracted to");
  }
  return directory;
}

}  // namespace

// The archive's file as read at open, with libzip's handle on it.
struct ZipArchive::OpenedFile {
  std::string bytes;
  ZipHandle zip;
};

namespace {

std::uint64_t NextArchiveVersion() {
  static std::atomic<std::uint64_t> last{0};
  return ++last;
}

}  // namespace

ZipArchive::ZipArchive(Loom::File path) : path_(std::move(path)), version_(NextArchiveVersion()) {}

ZipArchive::~ZipArchive() = default;

Loom::SmartPtr<ZipArchive> ZipArchive::Open(const Loom::File& path) {
  std::optional<std::string> file = ReadWholeFile(NativePath(path));
  if (!file) Fail("cannot read archive", path, "no such file");
  if (file->empty()) Fail("cannot open archive", path, "empty file");
  auto opened = std::make_unique<OpenedFile>();
  opened->bytes = std::move(*file);
  zip_error_t error;
  zip_error_init(&error);
  SourceHandle source(
      zip_source_buffer_create(opened->bytes.data(), opened->bytes.size(), 0, &error));
  if (!source) Fail("cannot open archive", path, LibzipMessage(&error));
  opened->zip.reset(zip_open_from_source(source.get(), ZIP_RDONLY | ZIP_CHECKCONS, &error));
  if (!opened->zip) Fail("cannot open archive", path, LibzipMessage(&error));
  source.release();  // owned by the archive now
  zip_error_fini(&error);

  Loom::SmartPtr<ZipArchive> archive(new ZipArchive(path));
  zip_t* zip = opened->zip.get();
  const zip_int64_t count = zip_get_num_entries(zip, 0);
  for (zip_int64_t i = 0; i < count; ++i) {
    zip_stat_t stat;
    const auto index = static_cast<zip_uint64_t>(i);
    if (zip_stat_index(zip, index, 0, &stat) != 0)
      Fail("cannot read archive", path, LibzipMessage(zip));
    // Directory entries carry no data; the members' names hold their folders.
    if (CheckEntry(stat, path)) continue;
    const std::string_view name = stat.name;
    archive->members_.push_back(
        {Utf16(name), {stat.size, stat.comp_size}, std::nullopt, index, false});
  }
  archive->opened_ = std::move(opened);
  return archive;
}

Loom::SmartPtr<ZipArchive> ZipArchive::Create(const Loom::File& path) {
  return Loom::SmartPtr<ZipArchive>(new ZipArchive(path));
}

const std::string& ZipArchive::bytesOf(const Member& member) const {
  if (!member.bytes) {
    std::string bytes = ReadEntry(opened_->zip.get(), member.index, member.size.size);
    if (bytes.size() != member.size.size) {
      Fail("cannot read archive member", path_,
           Utf8(member.name) + ": " + LibzipMessage(opened_->zip.get()));
    }
    member.bytes = std::move(bytes);
  }
  return *member.bytes;
}

Loom::Services::Archive::MemberSize ZipArchive::memberSize(const Loom::wstring& member) const {
  const Member* found = find(member);
  if (found == nullptr) Fail("no member '" + Utf8(member) + "' in archive", path_, "not found");
  return found->size;
}

const ZipArchive::Member* ZipArchive::find(const Loom::wstring& name) const {
  const auto found = std::find_if(members_.begin(), members_.end(),
                                  [&name](const Member& member) { return member.name == name; });
  return found == members_.end() ? nullptr : &*found;
}

bool ZipArchive::exists(const Loom::wstring& member) const { return find(member) != nullptr; }

Loom::vector<Loom::wstring> ZipArchive::members() const {
  Loom::vector<Loom::wstring> names;
  for (const Member& member : members_) names.push_back(member.name);
  return names;
}

Loom::string ZipArchive::read(const Loom::wstring& member) const {
  const Member* found = find(member);
  if (found == nullptr) Fail("no member '" + Utf8(member) + "' in archive", path_, "not found");
  return Loom::string(bytesOf(*found));
}

void ZipArchive::write(const Loom::wstring& member, const Loom::string& bytes) {
  version_ = NextArchiveVersion();
  const auto found = std::find_if(members_.begin(), members_.end(),
                                  [&member](const Member& m) { return m.name == member; });
  // Held as written; its stored size is what an uncompressed member would take.
  const MemberSize size{bytes.size(), bytes.size()};
  if (found == members_.end()) {
    members_.push_back({member, size, std::string(bytes.data(), bytes.size()), 0, true});
  } else {
    found->size = size;
    found->bytes.emplace(bytes.data(), bytes.size());
    found->changed = true;
  }
}

void ZipArchive::remove(const Loom::wstring& member) {
  version_ = NextArchiveVersion();
  std::erase_if(members_, [&member](const Member& m) { return m.name == member; });
}

void ZipArchive::save() {
  if (std::exchange(g_fail_next_save, false)) Fail("cannot save archive", path_, "injected fault");
  std::vector<SavedMember> named;
  for (const Member& member : members_) {
    if (member.changed) {
      named.push_back({Utf8(member.name), &*member.bytes, nullptr, 0});
    } else {
      named.push_back({Utf8(member.name), nullptr, opened_->zip.get(), member.index});
    }
  }
  if (!WriteFileAtomically(NativePath(path_), ZipBytes(named, path_))) {
    Fail("cannot save archive", path_, "the file could not be written");
  }
}

void ZipArchive::extract(const Loom::wstring& member, const Loom::File& directory) const {
  const Member* found = find(member);
  if (found == nullptr) Fail("no member '" + Utf8(member) + "' in archive", path_, "not found");
  const std::optional<std::filesystem::path> target = ExtractionTarget(member, directory);
  if (!target)
    Fail("refusing to extract '" + Utf8(member) + "' from", path_, "it leaves the directory");
  std::error_code error;
  std::filesystem::create_directories(target->parent_path(), error);
  if (!WriteFileAtomically(*target, bytesOf(*found))) {
    Fail("cannot extract '" + Utf8(member) + "' from", path_, "the file could not be written");
  }
}

void ZipArchive::extractAll(const Loom::File& directory) const {
  // Every name is checked before the first file is written: a refused archive leaves
  // nothing behind.
  for (const Member& member : members_) {
    if (!ExtractionTarget(member.name, directory)) {
      Fail("refusing to extract '" + Utf8(member.name) + "' from", path_,
           "it leaves the directory");
    }
  }
  for (const Member& member : members_) extract(member.name, directory);
}

void failNextArchiveSave() { g_fail_next_save = true; }

void WriteArchiveMember(const Loom::File& path, std::u16string_view member,
                        std::string_view bytes) {
  const Loom::SmartPtr<ZipArchive> archive =
      path.exists() ? ZipArchive::Open(path) : ZipArchive::Create(path);
  archive->write(Loom::wstring(member), Loom::string(bytes));
  archive->save();
}

}  // namespace refhost

namespace Loom::Services {

ArchiveError::ArchiveError(string message) : message_(std::move(message)) {}

const char* ArchiveError::what() const noexcept { return message_.c_str(); }

SmartPtr<Archive> Archive::open(const File& path) { return refhost::ZipArchive::Open(path); }

ArchiveBackingStoreIO::ArchiveBackingStoreIO(SmartPtr<Archive> archive, const wstring& member,
                                             int readOnly)
    : archive_(std::move(archive)), member_(member), readOnly_(readOnly != 0) {}

ArchiveBackingStoreIO::~ArchiveBackingStoreIO() = default;

SmartPtr<Dom::Document> ArchiveBackingStoreIO::read() {
  if (!archive_ || !archive_->exists(member_)) return nullptr;
  SmartPtr<Dom::Node> root = refhost::ParseXml(std::string(archive_->read(member_)));
  SmartPtr<Dom::Document> document = Dom::Document::create(FileStore::inMemory());
  if (!root || !document) return nullptr;
  document->setRoot(std::move(root));
  return document;
}

bool ArchiveBackingStoreIO::write(Dom::Document* document) {
  if (readOnly_ || !archive_ || document == nullptr) return false;
  const SmartPtr<Dom::Node> root = document->getRoot();
  if (!root) return false;
  const std::optional<std::string> xml = refhost::WriteXml(*root);
  if (!xml) return false;
  archive_->write(member_, string(*xml));
  return true;
}

}  // namespace Loom::Services
