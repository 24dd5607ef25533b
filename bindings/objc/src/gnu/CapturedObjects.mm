// The blocks runtime that goes with GCC's Objective-C runtime knows nothing of objects: a copied
// block would not retain what it has captured. The compiler's copy and dispose helpers call these
// two functions for each captured variable; defined here, they come before the runtime's own.

#include <dlfcn.h>

#import <Foundation/Foundation.h>

namespace {

/// A captured variable that is an object, no block and not marked `__block`.
constexpr int kIsObject = 3;

template <class Function>
Function* next(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" [[gnu::visibility("default")]] void _Block_object_assign(void* target,
                                                                    const void* source,
                                                                    const int flags) {
  static auto* const assign = next<void(void*, const void*, int)>("_Block_object_assign");
  if (flags == kIsObject) [static_cast<id>(const_cast<void*>(source)) retain];
  assign(target, source, flags);
}

extern "C" [[gnu::visibility("default")]] void _Block_object_dispose(const void* object,
                                                                     const int flags) {
  static auto* const dispose = next<void(const void*, int)>("_Block_object_dispose");
  dispose(object, flags);
  if (flags == kIsObject) [static_cast<id>(const_cast<void*>(object)) release];
}
