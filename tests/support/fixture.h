// The fixture every test of a script call uses: it calls objects as the host does and
// checks, after each call and at the end of the test, that the library holds no more
// host references than before.
#pragma once

#include <gtest/gtest.h>

#include "refhost/args.h"

class xClass;

namespace testing_support {

class HostTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  // findObject(object), then call(method, args); fails the test when the call leaves a
  // reference held. Returns the call's answer.
  bool Call(const char* object, const char* method, refhost::Args& args);
  bool Call(const char* object, const char* method, refhost::Args&& args) {
    return Call(object, method, args);
  }

 private:
  long baseline_ = 0;
};

}  // namespace testing_support
