#pragma once

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

#include "platform/Date.h"
#include "platform/URL.h"
#include "platform/UUID.h"
#include "platform/Value.h"

namespace twins {

// Plain values between the two languages. What comes from Objective-C is nil, of another class or
// of another range than it should be only by mistake, and raises `NSInvalidArgumentException`.

/// Raises unless the value is one that may be given.
void requireArgument(bool valid, NSNumber* value);
/// The object, which must be of the class.
id requireClass(id object, Class expected);

NSString* toObjC(std::string_view text);
inline NSString* toObjC(const std::string& text) { return toObjC(std::string_view(text)); }
NSDate* toObjC(ovinta::platform::Date date);
NSUUID* toObjC(const ovinta::platform::UUID& uuid);
/// Nil for one that the platform cannot read.
NSURL* toObjC(const ovinta::platform::URL& url);
/// `NSNull` for null.
id toObjC(const ovinta::platform::Value& value);
NSDictionary* toObjC(const ovinta::platform::Dictionary& dictionary);

/// One with half of a character, which UTF-8 cannot hold, raises.
std::string text(NSString* text);
std::optional<std::string> optionalText(NSString* text);
/// To the microsecond; saturates.
ovinta::platform::Date date(NSDate* date);
ovinta::platform::UUID uuid(NSUUID* uuid);
/// A date becomes a text such as "2021-03-04T20:30:00.000Z", data one in base 64, a whole number
/// beyond 64 bits with sign a real one. What the library's dictionaries cannot hold, a text with
/// half a character among it, is left out; in a list null stands in its place.
ovinta::platform::Dictionary dictionary(NSDictionary* dictionary);

}  // namespace twins
