// Loading and unloading the shared library as the host does: the created objects are
// destroyed at unload, once each, in registry order; objects never asked for are not.
// A fresh instance of the library has created nothing yet.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <vector>

#include "refhost/accounting.h"

namespace {

using FindObject = xClass* (*)(const char*);

TEST(UnloadTest, DestroysCreatedObjectsOnceInRegistryOrder) {
  void* library = dlopen(SPINDLE_LIBRARY_PATH, RTLD_NOW | RTLD_LOCAL);
  ASSERT_NE(library, nullptr) << dlerror();
  auto findObject = reinterpret_cast<FindObject>(dlsym(library, "findObject"));
  ASSERT_NE(findObject, nullptr);

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

  ASSERT_EQ(dlclose(library), 0);

  const std::vector<const xClass*>& destroyed = refhost::destroyedObjects();
  ASSERT_EQ(destroyed.size(), destroyedBefore + 3);
  const std::vector<const xClass*> order(destroyed.begin() + destroyedBefore, destroyed.end());
  EXPECT_EQ(order, (std::vector<const xClass*>{object, math, profiles}));
  EXPECT_EQ(refhost::liveBaseObjects(), objectsBefore);
}

}  // namespace
