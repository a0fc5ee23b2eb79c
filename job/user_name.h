// "username" (xUserName): fills the job nickname field "ePTKWJobAuthentication_NickName"
// with the stored nickname ("UserNickName" at the root of the user tree) or, without a
// usable one, with the user's network user name. Keeps no state.
#pragma once

#include "core/dispatch.h"
#include "host/xclass.h"

class xUserName final : public xClass {
 public:
  // Every call is answered true, matched or not: the scripts never look at it.
  bool call(const char* method, int argc, xarg_entry* args, xarg_entry* result) override;

 private:
  static const spindle::Method<xUserName> kMethods[];

  // extract(doc): the stored nickname, or the network user name when none is stored or
  // the stored one is exactly "????" (which is then removed from the settings). Nothing
  // without the field.
  bool Extract(spindle::CallArgs& args);
};
