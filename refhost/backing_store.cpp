// Backing stores: the host's base and file store, and refhost's memory and failing ones.
#include "refhost/backing_store.h"

#include <sys/stat.h>
#include <utf8.h>

#include <filesystem>
#include <optional>
#include <utility>

#include "refhost/dom.h"
#include "refhost/file_io.h"

namespace refhost {
namespace {

// The document's root as XML text; nothing when it has no root or holds a name or text
// that XML cannot carry, which no file can.
std::optional<std::string> DocumentXml(const Loom::Dom::Document& document) {
  const Loom::SmartPtr<Loom::Dom::Node> root = document.getRoot();
  if (!root) return std::nullopt;
  return WriteXml(*root);
}

// The file last parsed by a file store and its version (file_io.h): a store asked again
// for an unchanged file hands out the same document, as a memory store does. Readers that
// check a file and then load it (isXMLConfigValid, then loadSettings) so parse it once.
struct ParsedFile {
  std::filesystem::path path;
  FileVersion version;
  HostRef<Loom::Dom::Document> document;
};

ParsedFile& LastParsedFile() {
  static ParsedFile last;
  return last;
}

}  // namespace

bool MemoryBackingStore::write(Loom::Dom::Document* document) {
  if (document == nullptr) return false;
  document_ = HostRef(document);
  return true;
}

bool MemoryBackingStore::setXml(std::string_view xml) {
  Loom::SmartPtr<Loom::Dom::Node> root = ParseXml(std::string(xml));
  Loom::SmartPtr<Loom::Dom::Document> document =
      Loom::Dom::Document::create(Loom::FileStore::inMemory());
  if (!root || !document) return false;
  document->setRoot(std::move(root));
  return write(document.get());
}

std::string MemoryBackingStore::xml() const {
  if (!document_) return std::string();
  return DocumentXml(*document_).value_or(std::string());
}

Loom::SmartPtr<Loom::Dom::Document> FailingBackingStore::read() {
  if (std::exchange(fail_next_read_, false)) return nullptr;
  return inner_->read();
}

bool FailingBackingStore::write(Loom::Dom::Document* document) {
  if (std::exchange(fail_next_write_, false)) return false;
  return inner_->write(document);
}

}  // namespace refhost

namespace Loom::Services {

BackingStoreIO::BackingStoreIO() = default;
BackingStoreIO::~BackingStoreIO() = default;

FileBackingStoreIO::FileBackingStoreIO(const File& path, int createMissing, int readOnly)
    : path_(path), createMissing_(createMissing != 0), readOnly_(readOnly != 0) {}

FileBackingStoreIO::~FileBackingStoreIO() = default;

SmartPtr<Dom::Document> FileBackingStoreIO::read() {
  const std::filesystem::path path = refhost::NativePath(path_);
  refhost::ParsedFile& last = refhost::LastParsedFile();
  const auto version = refhost::VersionOf(path);
  if (version && last.document && last.path == path && last.version == *version) {
    return last.document.share();
  }
  std::optional<std::string> bytes = refhost::ReadWholeFile(path);
  if (!bytes) return nullptr;
  SmartPtr<Dom::Node> root = refhost::ParseXml(std::move(*bytes));
  SmartPtr<Dom::Document> document = Dom::Document::create(FileStore::onFile(path_));
  if (!root || !document) return nullptr;
  document->setRoot(std::move(root));
  if (version) last = refhost::ParsedFile{path, *version, refhost::HostRef(document.get())};
  return document;
}

bool FileBackingStoreIO::write(Dom::Document* document) {
  if (readOnly_ || document == nullptr) return false;
  const std::filesystem::path target = refhost::NativePath(path_);
  std::error_code error;
  if (!createMissing_ && !std::filesystem::exists(target, error)) return false;
  const std::optional<std::string> xml = refhost::DocumentXml(*document);
  return xml && refhost::WriteFileAtomically(target, *xml);
}

}  // namespace Loom::Services
