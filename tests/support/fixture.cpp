#include "support/fixture.h"

#include "core/spindleui.h"
#include "refhost/accounting.h"

namespace testing_support {

void HostTest::SetUp() { baseline_ = refhost::heldReferences(); }

void HostTest::TearDown() {
  EXPECT_EQ(refhost::heldReferences(), baseline_) << "references still held at the end of the test";
}

bool HostTest::Call(const char* object, const char* method, refhost::Args& args) {
  xClass* target = findObject(object);
  EXPECT_NE(target, nullptr) << "no object " << object;
  if (target == nullptr) return false;
  const long before = refhost::heldReferences();
  const bool answer = target->call(method, args.count(), args.records(), nullptr);
  EXPECT_EQ(refhost::heldReferences(), before)
      << object << "." << method << " left references held";
  return answer;
}

}  // namespace testing_support
