// Loading and unloading the shared library as the host does: the created objects are
// destroyed at unload, once each, in registry order; objects never asked for are not.
// A fresh instance of the library has created nothing yet.
#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "refhost/accounting.h"
#include "tools/loomsim/library.h"

namespace {

TEST(UnloadTest, DestroysCreatedObjectsOnceInRegistryOrder) {
  auto library = std::make_unique<loomsim::Library>(SPINDLE_LIBRARY_PATH);
  ASSERT_TRUE(library->ok()) << library->error();
  const loomsim::Library::FindObject findObject = library->finder();

  // The host out of memory: null, and the next request tries again.
  refhost::failNextBaseAllocation();
  EXPECT_EQ(findObject("Math"), nullptr);

  const long objectsBefore = refhost::liveBaseObjects();
  const std::size_t destroyedBefore = refhost::destroyedObjects().size();
  // Asked for out of registry order, one of them twice.
  xClass* profiles = findObject("profiles");
  xClass* math = findObject("Math");
  xClass* object = findObject("obj");
  ASSERT_EQ(findObject("Math"), math);
  EXPECT_EQ(refhost::liveBaseObjects(), objectsBefore + 3);

  library.reset();  // unloads

  const std::vector<const xClass*>& destroyed = refhost::destroyedObjects();
  ASSERT_EQ(destroyed.size(), destroyedBefore + 3);
  const std::vector<const xClass*> order(destroyed.begin() + destroyedBefore, destroyed.end());
  EXPECT_EQ(order, (std::vector<const xClass*>{object, math, profiles}));
  EXPECT_EQ(refhost::liveBaseObjects(), objectsBefore);
}

}  // namespace
