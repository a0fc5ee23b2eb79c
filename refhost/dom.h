// The reference host's stored DOM: plain element trees (Loom::Dom::Node), the documents
// that hold them, and XML text in and out of them through pugixml.
//
// Nodes are the host's own type: pugixml parses and saves, but nothing else in refhost
// sees a pugi tree. A node holds its children with structural (uncounted) references, so
// only what is handed out shows in refhost::heldReferences(). A node sits in at most one
// parent: appending it elsewhere moves it, as in any DOM. Element nodes only: character
// data in parsed XML is not kept (no stored document of this host carries any).
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/dom.h"
#include "host/file.h"
#include "refhost/host_ref.h"

namespace refhost {

class DomNode;

// The children of a DomNode.
class DomChildren final : public Loom::Dom::ChildVector {
 public:
  explicit DomChildren(DomNode* owner) : owner_(owner) {}
  ~DomChildren();
  DomChildren(const DomChildren&) = delete;
  DomChildren& operator=(const DomChildren&) = delete;

  std::size_t getNumChildren() const override { return nodes_.size(); }
  Loom::Dom::Node* operator[](std::size_t index) const override;
  void remove(std::size_t index) override;
  // Appends `child`, first taking it out of the parent it is in. A null child, a node of
  // another implementation, and a node that is this one or one of its ancestors (which
  // would make a cycle) are ignored.
  void append(Loom::SmartPtr<Loom::Dom::Node> child) override;

 private:
  DomNode* owner_;
  std::vector<HostRef<DomNode>> nodes_;
};

// The attributes of a DomNode, in the order they were first set.
class DomAttributes final : public Loom::Dom::AttributeMap {
 public:
  DomAttributes() = default;
  ~DomAttributes() = default;
  DomAttributes(const DomAttributes&) = default;
  DomAttributes& operator=(const DomAttributes&) = default;

  bool contains(const Loom::wstring& name) const override;
  Loom::wstring operator[](const Loom::wstring& name) const override;
  void set(const Loom::wstring& name, const Loom::wstring& value) override;
  void remove(const Loom::wstring& name) override;
  std::size_t size() const override { return entries_.size(); }
  // The name at `index`, "" past the end.
  Loom::wstring nameAt(std::size_t index) const override;

 private:
  std::vector<std::pair<Loom::wstring, Loom::wstring>> entries_;
};

class DomNode final : public Loom::Dom::Node {
 public:
  explicit DomNode(Loom::wstring name) : name_(std::move(name)) {}

  const Loom::wstring& getName() const override { return name_; }
  Loom::Dom::ChildVector& children() override { return children_; }
  Loom::Dom::AttributeMap& attributes() override { return attributes_; }
  // A deep copy without a parent; null when the host is out of memory.
  Loom::SmartPtr<Loom::Dom::Node> clone() const override;

  // The node this one is a child of, or null.
  DomNode* parent() const { return parent_; }

 private:
  friend class DomChildren;
  ~DomNode() override = default;

  Loom::wstring name_;
  DomAttributes attributes_;
  DomChildren children_{this};
  DomNode* parent_ = nullptr;
};

// Where a document's bytes live: a file, or memory only (no file).
class DomFileStore final : public Loom::FileStore {
 public:
  DomFileStore() = default;
  explicit DomFileStore(Loom::File file) : file_(std::move(file)), on_file_(true) {}

  bool onFile() const { return on_file_; }
  // The file; an empty path for a store in memory.
  const Loom::File& file() const { return file_; }

 private:
  ~DomFileStore() override = default;

  Loom::File file_;
  bool on_file_ = false;
};

// The root (or nothing) over the FileStore it was made with.
class DomDocument final : public Loom::Dom::Document {
 public:
  explicit DomDocument(Loom::SmartPtr<Loom::FileStore> store) : store_(store.get()) {}

  // The store the document was made with; null when it was made with none.
  Loom::FileStore* store() const { return store_.get(); }

  Loom::SmartPtr<Loom::Dom::Node> getRoot() const override { return root_.share(); }
  void setRoot(Loom::SmartPtr<Loom::Dom::Node> root) override { root_ = HostRef(root.get()); }

 private:
  ~DomDocument() override = default;

  HostRef<Loom::FileStore> store_;
  HostRef<Loom::Dom::Node> root_;
};

// Parses `xml` (taken, and freed once parsed) into a new tree. Null on malformed XML,
// without a document element, or beyond the limits of refhost/xml_text.h; then
// `error` (when given) holds the description and `line` the 1-based line of the fault.
Loom::SmartPtr<Loom::Dom::Node> ParseXml(std::string xml, std::string* error = nullptr,
                                         int* line = nullptr);

// The tree under `root` as UTF-8 XML text with an XML declaration, indented by two
// blanks per level. Nothing, with `error` (when given) saying why, for a tree with a name
// or a value that XML 1.0 cannot carry (refhost/xml_text.h): no part of it is written.
std::optional<std::string> WriteXml(const Loom::Dom::Node& root, std::string* error = nullptr);

}  // namespace refhost
