// refhost::Sheet: one property sheet of the reference host, for tests and the runner.
//
// A sheet is what the host builds when it opens a printer's properties: one Window
// (settings trees, setting serialiser, plug-ins, string table), one property manager,
// one script environment, and the XUL documents of its pages and dialogs, which share
// them. The sheet keeps every document it loaded until it is destroyed; the directories
// and the change observer set on the sheet apply to all of its documents, also to those
// loaded later.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "refhost/change_observer.h"
#include "refhost/document.h"
#include "refhost/host_ref.h"
#include "refhost/properties.h"
#include "refhost/script_env.h"
#include "refhost/window.h"

namespace refhost {

class Sheet {
 public:
  Sheet();
  ~Sheet();
  Sheet(const Sheet&) = delete;
  Sheet& operator=(const Sheet&) = delete;

  Window& window() const { return *window_; }
  Properties& properties() const { return *properties_; }
  ScriptEnvironment& scriptEnv() const { return *scriptEnv_; }

  // Loads a page from XUL text under the file name `fileName` ("basic.xul"), or from a
  // file. Throws LoadError when the text is not well-formed or the file cannot be read.
  Loom::SmartPtr<Document> loadDocument(std::string xml, std::string fileName);
  Loom::SmartPtr<Document> loadDocumentFile(const std::filesystem::path& path);
  // The documents in the order they were loaded.
  std::vector<Document*> documents() const;

  // The driver's root directory, the user's directory and the all-users directory, as
  // the host gives them to the pages (getRootDir, getUserDir, getAllUsersDir).
  void setDirectories(std::u16string root, std::u16string user, std::u16string allUsers);
  // `child` was opened by `parent` (null: by nobody). False when that makes a cycle.
  bool setOwner(Document& child, Document* parent);
  // Tells `observer` (null: nobody) of every change in the sheet's documents, and makes it
  // the store observer of the settings trees and files (change_observer.h).
  void setChangeObserver(ChangeObserver* observer);

 private:
  Loom::SmartPtr<Document> keep(Loom::SmartPtr<Document> document);
  DocumentContext context() const;

  HostRef<Window> window_;
  HostRef<Properties> properties_;
  HostRef<ScriptEnvironment> scriptEnv_;
  std::vector<HostRef<Document>> documents_;
  std::u16string rootDir_;
  std::u16string userDir_;
  std::u16string allUsersDir_;
  ChangeObserver* observer_ = nullptr;
};

}  // namespace refhost
