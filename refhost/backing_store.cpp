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
  std::optional<std::string> bytes = refhost::ReadWholeFile(refhost::NativePath(path_));
  if (!bytes) return nullptr;
  SmartPtr<Dom::Node> root = refhost::ParseXml(std::move(*bytes));
  SmartPtr<Dom::Document> document = Dom::Document::create(FileStore::onFile(path_));
  if (!root || !document) return nullptr;
  document->setRoot(std::move(root));
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
