// The classes of the table of twins, held to the runtime; that its selectors are there, the calls
// show.

#import <Foundation/Foundation.h>
#include <gtest/gtest.h>
#include <objc/runtime.h>

#include "tests/bindings/objc/TwinTable.h"

using ovinta::test::twinTable;

namespace {

/// What comes with being an object.
const std::set<std::string> kOfAllObjects{"isEqual:", "hash", "dealloc", "release", "+new"};

std::set<std::string> implemented(Class objectClass, const std::string& sign) {
  std::set<std::string> names;
  unsigned int count = 0;
  Method* const methods = class_copyMethodList(objectClass, &count);
  for (unsigned int i = 0; i < count; ++i) {
    const std::string name = sel_getName(method_getName(methods[i]));
    if (!kOfAllObjects.contains(sign + name)) names.insert(sign + name);
  }
  free(methods);
  return names;
}

TEST(TwinTable, NothingIsThereBesidesTheTable) {
  for (const auto& [name, selectors] : twinTable()) {
    Class const objectClass = objc_getClass(name.c_str());
    ASSERT_NE(objectClass, nullptr) << name;
    std::set<std::string> found = implemented(objectClass, "");
    found.merge(implemented(object_getClass((id)objectClass), "+"));
    for (const std::string& selector : found) {
      EXPECT_TRUE(selectors.contains(selector)) << name << " " << selector;
    }
  }
}

}  // namespace
