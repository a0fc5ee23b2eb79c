// Stored DOM trees, documents and XML text (pugixml).
#include "refhost/dom.h"

#include <algorithm>
#include <pugixml.hpp>

#include "refhost/file_io.h"
#include "refhost/text.h"
#include "refhost/xml_text.h"

namespace refhost {

DomChildren::~DomChildren() {
  // Children held elsewhere outlive this node: they must not point back at it.
  for (const HostRef<DomNode>& child : nodes_) child->parent_ = nullptr;
}

Loom::Dom::Node* DomChildren::operator[](std::size_t index) const {
  return index < nodes_.size() ? nodes_[index].get() : nullptr;
}

void DomChildren::remove(std::size_t index) {
  if (index >= nodes_.size()) return;
  nodes_[index]->parent_ = nullptr;
  nodes_.erase(nodes_.begin() + static_cast<std::ptrdiff_t>(index));
}

void DomChildren::append(Loom::SmartPtr<Loom::Dom::Node> child) {
  // Every node of this host comes from createNode, clone or a parse.
  auto* node = dynamic_cast<DomNode*>(child.get());
  if (node == nullptr) return;
  for (const DomNode* ancestor = owner_; ancestor != nullptr; ancestor = ancestor->parent_) {
    if (ancestor == node) return;
  }
  HostRef<DomNode> held(node);
  if (DomNode* old_parent = node->parent_) {
    std::vector<HostRef<DomNode>>& siblings = old_parent->children_.nodes_;
    siblings.erase(std::find_if(siblings.begin(), siblings.end(),
                                [node](const HostRef<DomNode>& n) { return n.get() == node; }));
  }
  node->parent_ = owner_;
  nodes_.push_back(std::move(held));
}

bool DomAttributes::contains(const Loom::wstring& name) const {
  return std::any_of(entries_.begin(), entries_.end(),
                     [&name](const auto& entry) { return entry.first == name; });
}

Loom::wstring DomAttributes::operator[](const Loom::wstring& name) const {
  for (const auto& [key, value] : entries_) {
    if (key == name) return value;
  }
  return Loom::wstring();
}

void DomAttributes::set(const Loom::wstring& name, const Loom::wstring& value) {
  for (auto& [key, old_value] : entries_) {
    if (key == name) {
      old_value = value;
      return;
    }
  }
  entries_.emplace_back(name, value);
}

void DomAttributes::remove(const Loom::wstring& name) {
  std::erase_if(entries_, [&name](const auto& entry) { return entry.first == name; });
}

Loom::wstring DomAttributes::nameAt(std::size_t index) const {
  return index < entries_.size() ? entries_[index].first : Loom::wstring();
}

Loom::SmartPtr<Loom::Dom::Node> DomNode::clone() const {
  Loom::SmartPtr<DomNode> copy(new DomNode(name_));
  if (!copy) return nullptr;
  copy->attributes_ = attributes_;
  for (std::size_t i = 0; i < children_.getNumChildren(); ++i) {
    Loom::SmartPtr<Loom::Dom::Node> child = children_[i]->clone();
    if (!child) return nullptr;
    copy->children_.append(std::move(child));
  }
  return copy;
}

namespace {

// Null when the host runs out of memory on the way.
Loom::SmartPtr<Loom::Dom::Node> FromPugi(const pugi::xml_node& element) {
  Loom::SmartPtr<Loom::Dom::Node> node = Loom::Dom::createNode(Utf16(element.name()));
  if (!node) return nullptr;
  for (const pugi::xml_attribute& attribute : element.attributes()) {
    node->attributes().set(Utf16(attribute.name()), Utf16(attribute.value()));
  }
  for (const pugi::xml_node& child : element.children()) {
    if (child.type() != pugi::node_element) continue;
    Loom::SmartPtr<Loom::Dom::Node> converted = FromPugi(child);
    if (!converted) return nullptr;
    node->children().append(std::move(converted));
  }
  return node;
}

void ToPugi(Loom::Dom::Node& node, pugi::xml_node parent, int depth) {
  pugi::xml_node element = AppendCheckedElement(parent, node.getName(), depth);
  Loom::Dom::AttributeMap& attributes = node.attributes();
  for (std::size_t i = 0; i < attributes.size(); ++i) {
    const Loom::wstring name = attributes.nameAt(i);
    AppendCheckedAttribute(element, name, attributes[name]);
  }
  Loom::Dom::ChildVector& children = node.children();
  for (std::size_t i = 0; i < children.getNumChildren(); ++i) {
    ToPugi(*children[i], element, depth + 1);
  }
}

void Report(std::string* error, int* line, std::string message, int at) {
  if (error != nullptr) *error = std::move(message);
  if (line != nullptr) *line = at;
}

}  // namespace

Loom::SmartPtr<Loom::Dom::Node> ParseXml(std::string xml, std::string* error, int* line) {
  pugi::xml_document document;
  std::string fault;
  int faultLine = 0;
  if (!ParseXmlText(std::move(xml), document, kMaxXmlDepth, fault, faultLine)) {
    Report(error, line, std::move(fault), faultLine);
    return nullptr;
  }
  Loom::SmartPtr<Loom::Dom::Node> root = FromPugi(document.document_element());
  if (!root) Report(error, line, "out of memory", 1);
  return root;
}

std::optional<std::string> WriteXml(const Loom::Dom::Node& root, std::string* error) {
  pugi::xml_document document;
  pugi::xml_node declaration = document.append_child(pugi::node_declaration);
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "UTF-8";
  try {
    // The host interface has no const accessors; writing only reads the tree.
    ToPugi(const_cast<Loom::Dom::Node&>(root), document, 1);
  } catch (const XmlWriteError& fault) {
    if (error != nullptr) *error = fault.what();
    return std::nullopt;
  }
  return SaveXmlText(document);
}

}  // namespace refhost

namespace Loom::Dom {

SmartPtr<Node> createNode(const wstring& name) {
  return SmartPtr<Node>(new refhost::DomNode(name));
}

SmartPtr<Document> Document::create(SmartPtr<FileStore> store) {
  return SmartPtr<Document>(new refhost::DomDocument(std::move(store)));
}

}  // namespace Loom::Dom

namespace Loom {

SmartPtr<FileStore> FileStore::inMemory() {
  return SmartPtr<FileStore>(new refhost::DomFileStore());
}

SmartPtr<FileStore> FileStore::onFile(const File& path) {
  return SmartPtr<FileStore>(new refhost::DomFileStore(path));
}

}  // namespace Loom

namespace Loom::Services {

XmlParser::~XmlParser() = default;
DomXmlParser::DomXmlParser() = default;
DomXmlParser::~DomXmlParser() = default;

bool DomXmlParser::parse(const File& path) {
  root_.reset();
  std::optional<std::string> bytes = refhost::ReadWholeFile(refhost::NativePath(path));
  if (bytes) root_ = refhost::ParseXml(std::move(*bytes));
  return static_cast<bool>(root_);
}

SmartPtr<Dom::Node> DomXmlParser::detachRoot() {
  SmartPtr<Dom::Node> root = std::move(root_);
  return root;
}

}  // namespace Loom::Services
