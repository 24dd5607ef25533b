#pragma once

#include <memory>
#include <utility>

#import "bindings/objc/src/Calls.h"
#import "bindings/objc/src/Conversion.h"

namespace twins {

/// A copy of the block, released with the last pointer to it.
std::shared_ptr<const void> keepBlock(const void* block);

/// The callback that calls the block with the twins of its own arguments; empty for a nil block.
template <class Callback, class... Objects>
Callback callback(void (^block)(Objects...)) {
  if (!block) return {};
  return [kept = keepBlock((const void*)block)](const auto&... values) {
    callApplication([&] { ((void (^)(Objects...))kept.get())(toObjC(values)...); });
  };
}

}  // namespace twins
