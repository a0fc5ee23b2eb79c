// refhost::Document: a live XUL page of the reference host.
//
// A document is loaded from XUL text or a file (pugixml parses; the live tree is made of
// refhost::Element), keeps an index of its elements' ids that follows every structural
// and id change, and is saved back to XUL text. Each document has a script-argument
// element, named "args", which is not in its tree: findElement resolves "args" to it,
// getElementById does not. The sheet that loads a document gives it its window, script
// environment, user data and directories; a document remembers the attributes every
// element had when it was loaded, so reinitialiseDefaults can put them back (copied only
// for the elements whose attributes change, see refhost/element.h).
//
// Loading holds the parsed text and the host's tree at once only in part: each part of
// the parsed text is dropped once its elements are built. A page costs its text (kept by
// the parser until the tree is built) plus its elements, each value held as UTF-16.
#pragma once

#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/properties.h"
#include "host/script.h"
#include "host/settings.h"
#include "host/xul.h"
#include "refhost/change_observer.h"
#include "refhost/element.h"
#include "refhost/host_ref.h"

namespace refhost {

// XUL text that could not be loaded: pugixml's description of the fault and its 1-based
// line (0 when the fault is not in the text, e.g. an unreadable file).
class LoadError : public std::runtime_error {
 public:
  LoadError(const std::string& source, std::string message, int line);
  const std::string& message() const { return message_; }
  int line() const { return line_; }

 private:
  std::string message_;
  int line_;
};

// What a document shares with the other documents of its property sheet.
struct DocumentContext {
  Loom::XUL::xWindow* window = nullptr;
  Loom::JS::Environment* scriptEnv = nullptr;
  Loom::PropertyManager* userData = nullptr;
};

class Document final : public Loom::XUL::xXULDocWindows {
 public:
  // Loads XUL text (taken, and freed once parsed); `fileName` is the page's file name
  // ("basic.xul"). Throws LoadError on text that is not well-formed XML, has no root
  // element or is beyond the limits of refhost/xml_text.h.
  static Loom::SmartPtr<Document> FromXml(std::string xml, std::u16string fileName,
                                          const DocumentContext& context);
  // Loads a XUL file; the file name is the last part of `path`. Throws LoadError.
  static Loom::SmartPtr<Document> FromFile(const std::filesystem::path& path,
                                           const DocumentContext& context);

  // xXULDoc. findElement and takeFoundElement know only the whole-document search mode;
  // other modes find nothing. createElement gives null for a type without a tag.
  Loom::SmartPtr<Loom::XUL::xXULElem> getElementById(const Loom::wstring& id) const override;
  void findElement(const Loom::wstring& id, int mode) override;
  Loom::SmartPtr<Loom::XUL::xXULElem> takeFoundElement(int mode) override;
  Loom::SmartPtr<Loom::XUL::xXULDoc> getOwnerDoc() const override;
  Loom::SmartPtr<Loom::XUL::xXULElem> createElement(int type) override;
  Loom::SmartPtr<Loom::XUL::xWindow> getXWindow() const override;
  Loom::SmartPtr<Loom::JS::Environment> getScriptEnv() const override;
  Loom::wstring getRootDir() const override;
  Loom::wstring getUserDir() const override;
  Loom::wstring getAllUsersDir() const override;
  Loom::wstring getFileName() const override;
  Loom::SmartPtr<Loom::Services::Archive> getArchive() const override;
  // Language names are given in their own language ("Deutsch", "日本語"), as a language
  // picker shows them; an unknown code gives the code itself.
  Loom::wstring getLocaleID(const Loom::wstring& languageCode) const override;
  Loom::SmartPtr<Loom::PropertyManager> getUserData() const override;
  void setUserData(Loom::SmartPtr<Loom::PropertyManager> properties) override;
  // `list` is a menulist (whose menupopup is created when missing) or a menupopup of this
  // document; false for anything else. An entry without "label" shows its key.
  bool genMenuListFromPersistentItem(Loom::XUL::xXULElem* list,
                                     Loom::Services::PersistentItem& branch) override;
  void reinitialiseDefaults() override;

  // The host's own access.
  Element& root() const { return *root_; }
  Element& argsElement() const { return *args_; }
  // The element with `id` in the tree (the first in document order when several carry
  // it), or null.
  Element* elementById(std::u16string_view id) const;
  // Whether `element` is in this document's tree.
  bool contains(const Element& element) const;
  // The document as XUL text (UTF-8, indented, with an XML declaration). Throws
  // XmlWriteError for a name or value that XML cannot carry.
  std::string toXml() const;

  // Set-up by the sheet.
  void setDirectories(std::u16string root, std::u16string user, std::u16string allUsers);
  void setArchive(Loom::SmartPtr<Loom::Services::Archive> archive);
  // Makes `owner` the document that opened this one (null for none). False, with nothing
  // changed, when that would make a document its own owner.
  bool setOwner(Document* owner);
  void setChangeObserver(ChangeObserver* observer) { observer_ = observer; }

 private:
  friend class Element;

  explicit Document(const DocumentContext& context);
  ~Document() override;

  // Called by elements after they changed.
  void attributeChanged(Element& element, std::u16string_view name, const std::u16string* before,
                        const std::u16string* after);
  void elementAdded(Element& element);
  void elementRemoved(Element& element, const Element& formerParent);

  void index(Element& subtree);
  void unindex(Element& subtree);
  void indexId(const std::u16string& id, Element& element);
  void unindexId(const std::u16string& id, Element& element);
  void notify(const Change& change) const;

  HostRef<DocumentAnchor> anchor_;
  HostRef<Element> root_;
  HostRef<Element> args_;
  // Every element of the tree by id; an id carried by several elements has one entry for each.
  std::unordered_multimap<std::u16string, Element*, TextHash, std::equal_to<>> idIndex_;
  HostRef<Element> found_;
  HostRef<Loom::XUL::xWindow> window_;
  HostRef<Loom::JS::Environment> scriptEnv_;
  HostRef<Loom::PropertyManager> userData_;
  HostRef<Loom::Services::Archive> archive_;
  HostRef<Document> owner_;
  std::u16string fileName_;
  std::u16string rootDir_;
  std::u16string userDir_;
  std::u16string allUsersDir_;
  ChangeObserver* observer_ = nullptr;
};

}  // namespace refhost
