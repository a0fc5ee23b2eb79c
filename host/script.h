// The script environment of a document.
#pragma once

#include "host/loom_base.h"

class xClass;

namespace Loom::XUL {
class xXULElem;
}

namespace Loom::JS {

// A script global that wraps a native object of some plug-in library.
class Object : public RefCount {
 public:
  // The native object, or null when the global is not one.
  virtual xClass* toPtr() const = 0;
};

class Environment : public RefCount {
 public:
  // Runs `text` (one or more statements) as the page's script, under the source name
  // `source`, with `element` as the element the script runs for (may be null). False
  // when a statement fails.
  virtual bool doString(const string& text, const string& source, XUL::xXULElem* element) = 0;
  // The global named `name`, or null.
  virtual SmartPtr<Object> getObject(const string& name) = 0;
};

}  // namespace Loom::JS
