#pragma once

#import <OvintaObjC/OvintaRecord.h>

#include <memory>

#include "bindings/objc/src/Held.h"

@interface OvintaRecord (Held)
- (instancetype)initWithHeld:(std::unique_ptr<twins::Held>)held;
- (twins::Held&)held;
@end
