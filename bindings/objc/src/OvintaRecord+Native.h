#pragma once

#import <OvintaObjC/OvintaRecord.h>

#include <memory>

#include "bindings/objc/src/Native.h"

@interface OvintaRecord (Native)
- (instancetype)initWithNative:(std::unique_ptr<twins::Native>)native;
- (twins::Native&)native;
@end
