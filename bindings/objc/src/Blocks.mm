#import "bindings/objc/src/Blocks.h"

#include <Block.h>

#include "platform/FatalError.h"

namespace twins {
namespace {

/// A block must outlive the stack frame that it was written in. GNUstep's base library brings a
/// `_Block_copy` for blocks of another layout, which hands ours back uncopied; the first library in
/// the program's list wins.
__attribute__((constructor)) void requireCopiedBlocks() {
  int captured = 0;
  int (^const block)(void) = ^{
    return captured;
  };
  int (^const copy)(void) = Block_copy(block);
  if ((const void*)copy == (const void*)block) {
    ovinta::platform::fatalError(
        "Block_copy copies nothing: link BlocksRuntime before gnustep-base");
  }
  Block_release(copy);
}

}  // namespace

// Never `[block copy]`: a block of this runtime is no object.
std::shared_ptr<const void> keepBlock(const void* block) {
  return {Block_copy(block), [](const void* copy) {
            // What the block has captured may go with it, on whatever thread this is.
            callApplication([copy] { Block_release(copy); });
          }};
}

}  // namespace twins
