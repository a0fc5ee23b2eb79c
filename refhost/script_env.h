// refhost::ScriptEnvironment: the script environment of a document (Loom::JS::Environment).
//
// It records every statement run through doString, in order, so tests and the runner can
// see what the library asked the page to do, and hands each statement to an executor
// when one is installed (the scenario runner's runs `obj.method(args);`, `call ...;` and
// `rule NAME;`). Globals wrapping native objects of other libraries ("imgQuality") are
// defined by the test or runner with defineObject.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "host/script.h"
#include "refhost/host_ref.h"

namespace refhost {

class ScriptEnvironment final : public Loom::JS::Environment {
 public:
  struct Statement {
    std::string text;          // trimmed, with its terminating ';' when it had one
    std::string source;        // the source name doString was given
    std::u16string elementId;  // the id of doString's element; "" for none or no id
  };

  ScriptEnvironment() = default;

  // Splits `text` into statements at each ';' outside single or double quotes (a
  // backslash escapes the next character inside quotes), trims blanks and line breaks,
  // drops empty pieces, and records each. With an executor, every statement is handed
  // to it after being recorded, the later ones also when an earlier one failed; false
  // when any of them returned false. Without one, true.
  bool doString(const Loom::string& text, const Loom::string& source,
                Loom::XUL::xXULElem* element) override;
  // The object defined as `name`, or null.
  Loom::SmartPtr<Loom::JS::Object> getObject(const Loom::string& name) override;

  const std::vector<Statement>& statements() const { return statements_; }
  void clearStatements() { statements_.clear(); }
  void setExecutor(std::function<bool(const Statement&)> executor) {
    executor_ = std::move(executor);
  }
  // Defines (replaces) the global `name`; a null object removes it.
  void defineObject(const std::string& name, Loom::SmartPtr<Loom::JS::Object> object);

 private:
  ~ScriptEnvironment() override = default;

  std::vector<Statement> statements_;
  std::function<bool(const Statement&)> executor_;
  std::map<std::string, HostRef<Loom::JS::Object>, std::less<>> objects_;
};

// A script global that wraps a native object of another library. It does not own the
// object: that library does.
class NativeObject final : public Loom::JS::Object {
 public:
  explicit NativeObject(xClass* object) : object_(object) {}
  xClass* toPtr() const override { return object_; }

 private:
  ~NativeObject() override = default;

  xClass* object_;
};

// The statements of `text`, split and trimmed as ScriptEnvironment::doString does.
std::vector<std::string> SplitStatements(std::string_view text);

}  // namespace refhost
