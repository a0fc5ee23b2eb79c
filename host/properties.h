// Printer and driver properties (Loom::PropertyManager): "loom.driver.name",
// "loom.driver.path", "loom.user.path", "loom.driver.prefix", ... A document's user
// data is its property manager.
#pragma once

#include "host/loom_base.h"

namespace Loom {

class PropertyManager : public RefCount {
 public:
  virtual bool exists(const string& key) const = 0;
  // The property's text; "" when it is not set.
  virtual wstring getString(const string& key) const = 0;
  // The property as a decimal integer; 0 when it is not set or not a number.
  virtual int getInt(const string& key) const = 0;
};

}  // namespace Loom
