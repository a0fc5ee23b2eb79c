// Plain DOM trees of the host: the stored form of documents (serialiser files, settings
// files, parsed XML), as opposed to the live XUL elements of host/xul.h.
//
// A validator walks these trees before they are stored (host/serialiser.h); the GUI
// settings code parses defaults files into them.
#pragma once

#include <cstddef>

#include "host/file.h"
#include "host/loom_base.h"

namespace Loom::Dom {

class Node;

// The children of a node, in document order.
class ChildVector {
 public:
  virtual std::size_t getNumChildren() const = 0;
  // The child at `index`, or null past the end. The node stays owned by its parent.
  virtual Node* operator[](std::size_t index) const = 0;
  // Drops the child at `index` (and its subtree); nothing past the end.
  virtual void remove(std::size_t index) = 0;
  virtual void append(SmartPtr<Node> child) = 0;

 protected:
  ~ChildVector() = default;
};

// The attributes of a node, by name, in the order they were first set.
class AttributeMap {
 public:
  virtual bool contains(const wstring& name) const = 0;
  // The value of `name`, "" when absent.
  virtual wstring operator[](const wstring& name) const = 0;
  virtual void set(const wstring& name, const wstring& value) = 0;
  // Removes `name`; a missing attribute is no error.
  virtual void remove(const wstring& name) = 0;
  virtual std::size_t size() const = 0;
  virtual wstring nameAt(std::size_t index) const = 0;

 protected:
  ~AttributeMap() = default;
};

class Node : public RefCount {
 public:
  virtual const wstring& getName() const = 0;
  virtual ChildVector& children() = 0;
  virtual AttributeMap& attributes() = 0;
  // A deep copy, not attached anywhere.
  virtual SmartPtr<Node> clone() const = 0;
};

// A new element node with no attributes and no children.
SmartPtr<Node> createNode(const wstring& name);

}  // namespace Loom::Dom

namespace Loom {

// Where a document's bytes live: a file on disk, or memory only.
class FileStore : public RefCount {
 public:
  static SmartPtr<FileStore> inMemory();
  static SmartPtr<FileStore> onFile(const File& path);
};

}  // namespace Loom

namespace Loom::Dom {

// An XML document: one root node (or none yet) over a FileStore.
class Document : public RefCount {
 public:
  static SmartPtr<Document> create(SmartPtr<FileStore> store);
  virtual SmartPtr<Node> getRoot() const = 0;
  virtual void setRoot(SmartPtr<Node> root) = 0;
};

}  // namespace Loom::Dom

namespace Loom::Services {

class XmlParser {
 public:
  virtual ~XmlParser();
  // Parses the file; false when it cannot be read or is not well-formed XML.
  virtual bool parse(const File& path) = 0;
};

// Parses into a DOM tree and hands its root over.
class DomXmlParser final : public XmlParser {
 public:
  DomXmlParser();
  ~DomXmlParser() override;
  DomXmlParser(const DomXmlParser&) = delete;
  DomXmlParser& operator=(const DomXmlParser&) = delete;

  bool parse(const File& path) override;
  // The root of the last parse (null when it failed); the parser keeps nothing.
  SmartPtr<Dom::Node> detachRoot();

 private:
  SmartPtr<Dom::Node> root_;
};

}  // namespace Loom::Services
