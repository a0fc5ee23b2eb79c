#include "refhost/sheet.h"

#include <new>

#include "refhost/text.h"

namespace refhost {
namespace {

template <class T>
HostRef<T> Create() {
  HostRef<T> created(new T());
  if (!created) throw std::bad_alloc();
  return created;
}

}  // namespace

Sheet::Sheet()
    : window_(Create<Window>()),
      properties_(Create<Properties>()),
      scriptEnv_(Create<ScriptEnvironment>()) {}

Sheet::~Sheet() {
  // Documents the library still holds outlive the sheet, but not its observer.
  for (HostRef<Document>& document : documents_) document->setChangeObserver(nullptr);
  if (observer_ != nullptr && StoreObserver() == observer_) SetStoreObserver(nullptr);
}

Loom::SmartPtr<Document> Sheet::loadDocument(std::string xml, std::string fileName) {
  return keep(Document::FromXml(std::move(xml),
                                std::u16string(std::u16string_view(Utf16(fileName))), context()));
}

Loom::SmartPtr<Document> Sheet::loadDocumentFile(const std::filesystem::path& path) {
  return keep(Document::FromFile(path, context()));
}

std::vector<Document*> Sheet::documents() const {
  std::vector<Document*> out;
  for (const HostRef<Document>& document : documents_) out.push_back(document.get());
  return out;
}

void Sheet::setDirectories(std::u16string root, std::u16string user, std::u16string allUsers) {
  rootDir_ = std::move(root);
  userDir_ = std::move(user);
  allUsersDir_ = std::move(allUsers);
  for (HostRef<Document>& document : documents_) {
    document->setDirectories(rootDir_, userDir_, allUsersDir_);
  }
}

bool Sheet::setOwner(Document& child, Document* parent) { return child.setOwner(parent); }

void Sheet::setChangeObserver(ChangeObserver* observer) {
  observer_ = observer;
  SetStoreObserver(observer);
  for (HostRef<Document>& document : documents_) document->setChangeObserver(observer_);
}

Loom::SmartPtr<Document> Sheet::keep(Loom::SmartPtr<Document> document) {
  document->setDirectories(rootDir_, userDir_, allUsersDir_);
  document->setChangeObserver(observer_);
  documents_.emplace_back(document.get());
  return document;
}

DocumentContext Sheet::context() const {
  return DocumentContext{window_.get(), scriptEnv_.get(), properties_.get()};
}

}  // namespace refhost
