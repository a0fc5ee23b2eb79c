// Live XUL documents, elements and windows of the host.
//
// A document is one XUL page; all documents of one property sheet share one xWindow,
// which owns the user and device settings trees, the setting serialiser, the plug-ins
// and the string table. Elements are reference counted and may outlive their removal
// from the tree. Lookups that find nothing return a null pointer; they never throw.
#pragma once

#include "host/loom_base.h"
#include "host/os.h"

namespace Loom {
class PropertyManager;
class Plugin;
}  // namespace Loom

namespace Loom::JS {
class Environment;
}

namespace Loom::Services {
class Archive;
class PersistentItem;
class PersistentSettings;
class XULDocSerialiser;
}  // namespace Loom::Services

namespace Loom::XUL {

class xXULDoc;
class xXULElem;
class xWindow;

using ElemList = vector<SmartPtr<xXULElem>>;

class xXULElem : public RefCount {
 public:
  // The element type code (host/codes.h).
  virtual int getType() const = 0;
  virtual SmartPtr<xXULDoc> getOwnerDocument() const = 0;

  // Fills `items` with the element's children of `type`, in order, after clearing it.
  // For a menu list the children are those of its item list (its menupopup).
  virtual bool getChildrenOfType(int type, ElemList& items) const = 0;
  virtual int getNumChildren() const = 0;
  // The child at `index`, or null.
  virtual SmartPtr<xXULElem> getChildAt(int index) const = 0;
  // False when `child` is not a child of this element.
  virtual bool removeChild(xXULElem* child) = 0;
  // Moves `child` (of the same document) to the end of this element's children.
  virtual bool appendChild(xXULElem* child) = 0;

  // Attributes by code (host/codes.h) and by name: one attribute behind both.
  // Reading an absent attribute gives "".
  virtual wstring getAttr(int code) const = 0;
  virtual void setAttr(int code, const wstring& value) = 0;
  virtual wstring getAttribute(const wstring& name) const = 0;
  virtual void setAttribute(const wstring& name, const wstring& value) = 0;
  virtual bool hasAttribute(const wstring& name) const = 0;
  virtual void removeAttribute(const wstring& name) = 0;

  // Menu lists: the selected item's value ("" when none); select the first item whose
  // value equals `value` (false, nothing changed, when none does); hide the items with
  // that value. Selecting keeps the items' selected flags, the list's value and its
  // selectedIndex consistent, as a XUL menulist does.
  virtual wstring getValfromMenulist() const = 0;
  virtual bool selMenulistWithVal(const wstring& value) = 0;
  virtual bool hideMenuItemByVal(const wstring& value) = 0;
  // The position of the selected item among the list's items, -1 when none; selecting
  // by position (false when out of range).
  virtual int getSelectedIndex() const = 0;
  virtual bool setSelectedIndex(int index) = 0;

  // Radio groups, the same way: the selected radio's value, select by value, and the
  // position of the radio with a value (-1 when none).
  virtual wstring getValFromRadioGroup() const = 0;
  virtual bool setRadioGroupWithVal(const wstring& value) = 0;
  virtual int getRadioGroupItemWithValue(const wstring& value) const = 0;
};

class xXULDoc : public RefCount {
 public:
  // Indexed lookup by id; does not find "args".
  virtual SmartPtr<xXULElem> getElementById(const wstring& id) const = 0;
  // Searches the whole document for `id`; "args" resolves to the script-argument
  // element, which is not in the tree. takeFoundElement hands over the result of the
  // last findElement with the same mode, once.
  virtual void findElement(const wstring& id, int mode) = 0;
  virtual SmartPtr<xXULElem> takeFoundElement(int mode) = 0;

  // The document that opened this one (a dialog's or sub-page's parent), or null.
  virtual SmartPtr<xXULDoc> getOwnerDoc() const = 0;
  // A new element of `type`, belonging to this document but not yet in its tree.
  virtual SmartPtr<xXULElem> createElement(int type) = 0;

  virtual SmartPtr<xWindow> getXWindow() const = 0;
  virtual SmartPtr<JS::Environment> getScriptEnv() const = 0;

  virtual wstring getRootDir() const = 0;
  virtual wstring getUserDir() const = 0;
  virtual wstring getAllUsersDir() const = 0;
  // The page's file name (e.g. "basic.xul").
  virtual wstring getFileName() const = 0;
  // The driver's UI archive, or null.
  virtual SmartPtr<Services::Archive> getArchive() const = 0;
  // The display name of the language `languageCode` ("de", "ja", ...) in the page's locale.
  virtual wstring getLocaleID(const wstring& languageCode) const = 0;

  // The document's user data: its property manager (may be null).
  virtual SmartPtr<PropertyManager> getUserData() const = 0;
  virtual void setUserData(SmartPtr<PropertyManager> properties) = 0;

  // Replaces the items of the menu list `list` by one item per child of `branch`: the
  // child's key as value, its "label" (resolved through the string table) as label.
  virtual bool genMenuListFromPersistentItem(xXULElem* list, Services::PersistentItem& branch) = 0;
};

// A document of a property sheet page, which can go back to its shipped defaults.
class xXULDocWindows : public xXULDoc {
 public:
  // Puts every element's attributes back as the page defined them when it was loaded.
  virtual void reinitialiseDefaults() = 0;
};

class xWindow : public RefCount {
 public:
  // The user and the device settings trees; owned by the window.
  virtual Services::PersistentSettings& getSettings() = 0;
  virtual Services::PersistentSettings& getDevSettings() = 0;
  // The window's own serialiser of sub-documents ("BypassDlg", "InsertPageDlgSettings", ...).
  virtual Services::XULDocSerialiser& getSettingSerialiser() = 0;

  // The plug-ins, in the host's order.
  virtual vector<SmartPtr<Plugin>> getPlugins() const = 0;
  virtual vector<string> getPluginNames() const = 0;
  virtual vector<wstring> getPluginLabels() const = 0;
  virtual bool pluginEnabled(const string& name) const = 0;
  virtual void setPluginEnabled(const string& name, bool enabled) = 0;

  // The language codes of the installed UI languages, in the host's order.
  virtual vector<wstring> getInstalledLanguages() const = 0;

  // Resolves string-table references "$NAME;" in `text`; unknown names stay as written.
  virtual wstring resolveString(const wstring& text) const = 0;
};

// The native window that shows `doc`'s root, or null.
OS::WindowHandle getXULRootHWND(xXULDoc* doc);

// Opens the dialog document `fileName` ("Zuhdlg_confirmImport.xul", found in the UI
// archive) owned by `parent`, with the window title `title` (a string-table reference is
// resolved when shown). False when the dialog cannot be opened.
bool openDialog(xXULDoc* parent, const wstring& fileName, const wstring& title);

}  // namespace Loom::XUL
