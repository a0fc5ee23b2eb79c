// What the reference host tells an observer about changes: to a property sheet's live
// documents, to its window's settings trees, and to files the host writes.
//
// The scenario runner registers one observer on a Sheet and prints every change a script
// call made. Reported are changes to elements inside a document's tree (and to its
// script-argument element); an element built up outside the tree is reported once, with
// all its attributes readable, when it is added. A settings node is reported when its
// value is set, when it is added (with whatever subtree it brings) and, still in the tree,
// just before it is removed with its subtree. A file is reported after the host wrote or
// removed it.
#pragma once

#include <string_view>

namespace Loom::Services {
class PersistentSettings;
}

namespace refhost {

class Document;
class Element;
class SettingsNode;

struct Change {
  enum class Kind {
    kAttributeAdded,
    kAttributeChanged,
    kAttributeRemoved,
    kElementAdded,
    kElementRemoved,
    kSettingAdded,
    kSettingChanged,
    kSettingRemoved,
    kFileWritten,
    kFileRemoved,
  };

  Kind kind;
  const Document* document = nullptr;
  // The element whose attribute changed, or the element added or removed.
  const Element* element = nullptr;
  // For kElementAdded / kElementRemoved: the element it was added to or removed from.
  const Element* parent = nullptr;
  // For attribute changes: the attribute, its value before (changed, removed) and after
  // (added, changed). Valid only during the call.
  std::u16string_view attribute = {};
  std::u16string_view oldValue = {};
  std::u16string_view newValue = {};
  // For settings changes: the tree, the node, and (kSettingChanged) its value before.
  const Loom::Services::PersistentSettings* settings = nullptr;
  const SettingsNode* setting = nullptr;
  std::string_view oldSetting = {};
  // For file changes: the file's path on this machine, in UTF-8 (file_io.h).
  std::string_view file = {};
};

class ChangeObserver {
 public:
  virtual ~ChangeObserver() = default;
  // Called after each change (before, for a settings node removed); the element and its
  // parent stay alive during the call.
  virtual void onChange(const Change& change) = 0;
};

// The observer of the host's stores: every settings tree and every file the host writes
// or removes (null: nobody). The stores are the process's, not a sheet's; Sheet's
// setChangeObserver sets this one too.
void SetStoreObserver(ChangeObserver* observer);
ChangeObserver* StoreObserver();

}  // namespace refhost
