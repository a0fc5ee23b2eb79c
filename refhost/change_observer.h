// What a property sheet tells an observer about changes to its live documents.
//
// The scenario runner registers one observer on a Sheet and prints every change a script
// call made. Reported are changes to elements inside a document's tree (and to its
// script-argument element); an element built up outside the tree is reported once, with
// all its attributes readable, when it is added.
#pragma once

#include <string_view>

namespace refhost {

class Document;
class Element;

struct Change {
  enum class Kind {
    kAttributeAdded,
    kAttributeChanged,
    kAttributeRemoved,
    kElementAdded,
    kElementRemoved,
  };

  Kind kind;
  const Document* document;
  // The element whose attribute changed, or the element added or removed.
  const Element* element;
  // For kElementAdded / kElementRemoved: the element it was added to or removed from.
  const Element* parent = nullptr;
  // For attribute changes: the attribute, its value before (changed, removed) and after
  // (added, changed). Valid only during the call.
  std::u16string_view attribute = {};
  std::u16string_view oldValue = {};
  std::u16string_view newValue = {};
};

class ChangeObserver {
 public:
  virtual ~ChangeObserver() = default;
  // Called after each change; the element and its parent stay alive during the call.
  virtual void onChange(const Change& change) = 0;
};

}  // namespace refhost
