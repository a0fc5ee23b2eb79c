// Stored documents: the host's XULDocSerialiser and the validators that clean a page's
// element tree before it is stored.
//
// A serialiser holds named stored documents (each the cleaned element tree of a page,
// with the current values of its controls), reads and writes them through a backing
// store, and puts stored values back into a live page.
#pragma once

#include "host/dom.h"
#include "host/loom_base.h"
#include "host/settings.h"

namespace Loom::XUL {
class xXULDoc;
}

namespace Loom::Services {

// Cleans a copy of a page's element tree before it is stored. Virtual slots after the
// destructor: validateTree.
class DocValidator : public RefCount {
 public:
  virtual void validateTree(Dom::Node* node) = 0;

 protected:
  DocValidator();
  ~DocValidator() override;
};

// Removes nothing itself; carries the walk on into every child of the node.
class BasicDocValidator : public DocValidator {
 public:
  BasicDocValidator();
  ~BasicDocValidator() override;
  void validateTree(Dom::Node* node) override;
};

class XULDocSerialiser {
 public:
  // `store` may be null: the documents then live in memory only, and load/save fail.
  XULDocSerialiser(SmartPtr<BackingStoreIO> store, SmartPtr<DocValidator> validator);
  ~XULDocSerialiser();
  XULDocSerialiser(const XULDocSerialiser&) = delete;
  XULDocSerialiser& operator=(const XULDocSerialiser&) = delete;

  // Replaces the stored documents by the store's; false when there is nothing to read.
  bool load();
  // Writes all stored documents to the store; false when it cannot.
  bool save();

  // Stores a cleaned copy of `doc`'s element tree, with its controls' values, as `name`
  // (replacing a document of that name).
  bool writeSettings(XUL::xXULDoc* doc, const string& name);
  // Puts the values stored as `name` back into the matching elements of `doc`; false
  // when nothing is stored under that name.
  bool loadSettings(XUL::xXULDoc* doc, const string& name);
  // The same, only for the elements inside the element `tab` of the stored document.
  bool loadTabSettings(XUL::xXULDoc* doc, const string& name, const string& tab);

  bool removeDoc(const string& name);
  // Stores `tree` as the document `name` (replacing one of that name).
  bool addDoc(const string& name, SmartPtr<Dom::Node> tree);
  // The stored document `name`, or null.
  SmartPtr<Dom::Node> getDoc(const string& name) const;

 private:
  struct Impl;
  Impl* impl_;
};

}  // namespace Loom::Services
