#import "bindings/objc/src/Values.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>

namespace platform = ovinta::platform;

namespace twins {
namespace {

id toObjC(std::nullptr_t) { return [NSNull null]; }
id toObjC(bool value) { return [NSNumber numberWithBool:value]; }
id toObjC(std::int64_t value) { return [NSNumber numberWithLongLong:value]; }
id toObjC(double value) { return [NSNumber numberWithDouble:value]; }
id toObjC(const platform::List& list) {
  NSMutableArray* const array = [NSMutableArray arrayWithCapacity:list.size()];
  for (const platform::Value& value : list) [array addObject:twins::toObjC(value)];
  return array;
}

platform::Value numberValue(NSNumber* number) {
  // The two truth values are single objects.
  if (number == [NSNumber numberWithBool:YES]) return true;
  if (number == [NSNumber numberWithBool:NO]) return false;
  const char type = *[number objCType];
  const bool unsignedOnly =
      (type == 'Q' || type == 'L') && [number unsignedLongLongValue] > INT64_MAX;
  if (type == 'f' || type == 'd' || unsignedOnly) return [number doubleValue];
  return static_cast<std::int64_t>([number longLongValue]);
}

/// Nil for a text with half of a character.
NSData* bytesOf(NSString* text) { return [text dataUsingEncoding:NSUTF8StringEncoding]; }

std::string textOf(NSData* bytes) {
  return std::string(static_cast<const char*>([bytes bytes]), [bytes length]);
}

/// As the service writes its instants, e.g. "2021-03-04T20:30:00.000Z".
/// Absent outside the years that the text can hold.
std::optional<std::string> dateText(NSDate* date) {
  using namespace std::chrono;
  constexpr double kYear0 = -62167219200;
  constexpr double kYear10000 = 253402300800;
  const double since1970 = [date timeIntervalSince1970];
  if (!(since1970 >= kYear0 && since1970 < kYear10000)) return std::nullopt;
  const auto instant = floor<milliseconds>(twins::date(date));
  const auto day = floor<days>(instant);
  const year_month_day calendar(day);
  const hh_mm_ss time(instant - day);
  std::array<char, 64> text{};
  std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d.%03dZ",
                static_cast<int>(calendar.year()), static_cast<unsigned>(calendar.month()),
                static_cast<unsigned>(calendar.day()), static_cast<int>(time.hours().count()),
                static_cast<int>(time.minutes().count()), static_cast<int>(time.seconds().count()),
                static_cast<int>(time.subseconds().count()));
  return text.data();
}

/// Absent for what the library's values cannot hold.
std::optional<platform::Value> value(id object) {
  if ([object isKindOfClass:[NSString class]]) {
    NSData* const bytes = bytesOf(object);
    return bytes ? std::optional<platform::Value>(textOf(bytes)) : std::nullopt;
  }
  if ([object isKindOfClass:[NSDate class]]) {
    auto date = dateText(object);
    return date ? std::optional<platform::Value>(*std::move(date)) : std::nullopt;
  }
  if ([object isKindOfClass:[NSData class]]) {
    return text([object base64EncodedStringWithOptions:0]);
  }
  if ([object isKindOfClass:[NSNumber class]]) return numberValue(object);
  if ([object isKindOfClass:[NSDictionary class]]) return dictionary(object);
  if ([object isKindOfClass:[NSNull class]]) return nullptr;
  if (![object isKindOfClass:[NSArray class]]) return std::nullopt;
  platform::List list;
  for (id item in object) list.push_back(value(item).value_or(nullptr));
  return list;
}

}  // namespace

void requireArgument(bool valid, NSNumber* value) {
  if (valid) return;
  [NSException raise:NSInvalidArgumentException format:@"%@ is not among the values", value];
}

id requireClass(id object, Class expected) {
  if (![object isKindOfClass:expected]) {
    [NSException raise:NSInvalidArgumentException
                format:@"%@ expected, %@ given", expected, object ? (id)[object class] : @"nil"];
  }
  return object;
}

NSString* toObjC(std::string_view text) {
  for (const NSStringEncoding encoding : {NSUTF8StringEncoding, NSISOLatin1StringEncoding}) {
    NSString* const string = [[[NSString alloc] initWithBytes:text.data()
                                                       length:text.size()
                                                     encoding:encoding] autorelease];
    if (string) return string;
  }
  return @"";
}

NSDate* toObjC(platform::Date date) {
  const std::chrono::duration<double> seconds = date.time_since_epoch();
  return [NSDate dateWithTimeIntervalSince1970:seconds.count()];
}

NSUUID* toObjC(const platform::UUID& uuid) {
  auto bytes = uuid.bytes;
  return [[[NSUUID alloc] initWithUUIDBytes:bytes.data()] autorelease];
}

NSURL* toObjC(const platform::URL& url) { return [NSURL URLWithString:toObjC(url.text)]; }

id toObjC(const platform::Value& value) {
  return std::visit([](const auto& held) -> id { return toObjC(held); }, value.storage);
}

NSDictionary* toObjC(const platform::Dictionary& dictionary) {
  NSMutableDictionary* const result = [NSMutableDictionary dictionary];
  for (const auto& [key, value] : dictionary) [result setObject:toObjC(value) forKey:toObjC(key)];
  return result;
}

std::string text(NSString* text) {
  NSData* const bytes = bytesOf(requireClass(text, [NSString class]));
  if (!bytes) {
    [NSException raise:NSInvalidArgumentException format:@"A text holds half a character"];
  }
  return textOf(bytes);
}

std::optional<std::string> optionalText(NSString* text) {
  return text ? std::optional(twins::text(text)) : std::nullopt;
}

platform::Date date(NSDate* date) {
  constexpr double kMost = 9.2e18;
  const double microseconds =
      [requireClass(date, [NSDate class]) timeIntervalSince1970] * std::micro::den;
  // Not a number counts as the least.
  const double held = std::fmin(std::fmax(microseconds, -kMost), kMost);
  return platform::Date(std::chrono::microseconds(std::llround(held)));
}

platform::UUID uuid(NSUUID* uuid) {
  platform::UUID result;
  [requireClass(uuid, [NSUUID class]) getUUIDBytes:result.bytes.data()];
  return result;
}

platform::Dictionary dictionary(NSDictionary* dictionary) {
  platform::Dictionary result;
  for (id key in requireClass(dictionary, [NSDictionary class])) {
    NSData* const name = [key isKindOfClass:[NSString class]] ? bytesOf(key) : nil;
    if (!name) continue;
    if (auto found = value([dictionary objectForKey:key])) {
      result.insert_or_assign(textOf(name), *std::move(found));
    }
  }
  return result;
}

}  // namespace twins
