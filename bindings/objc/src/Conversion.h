#pragma once

#include <cmath>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>
#include <vector>

#import "bindings/objc/src/IdentityMap.h"
#import "bindings/objc/src/OvintaRecord+Native.h"
#import "bindings/objc/src/TwinClasses.h"
#import "bindings/objc/src/Values.h"

namespace twins {

// From C++ to Objective-C: `toObjC` gives the plain type (a number stays one), `toObject` an
// object. All objects are autoreleased.

OvintaError* toObjC(const ovinta::ErrorPtr& error);

template <class T>
requires std::is_arithmetic_v<T> T toObjC(T number) { return number; }

template <class T>
requires std::is_enum_v<T> NSInteger toObjC(T value) { return static_cast<NSInteger>(value); }

template <HasTwin T>
auto* toObjC(const T& value) {
  return [[TwinClass<T>::alloc() initWithNative:wrap(value)] autorelease];
}

/// One twin for each object, as long as anyone holds it.
template <class T>
requires HasTwin<std::remove_const_t<T>>
auto* toObjC(const std::shared_ptr<T>& object) {
  using Twin = TwinClass<std::remove_const_t<T>>;
  using Instance = typename Twin::Instance;
  if (!object) return static_cast<Instance*>(nil);
  return static_cast<Instance*>(IdentityMap::shared().twin(
      object.get(), [&object]() -> id { return [Twin::alloc() initWithNative:wrap(object)]; }));
}

template <class T>
NSArray* toObjC(const std::vector<T>& list);
template <class T>
NSDictionary* toObjC(const std::map<std::string, T>& map);

template <class T>
auto* toObject(const T& value) {
  if constexpr (std::is_same_v<T, bool>) {
    return [NSNumber numberWithBool:value];
  } else if constexpr (std::is_floating_point_v<T>) {
    return [NSNumber numberWithDouble:value];
  } else if constexpr (std::is_arithmetic_v<T> || std::is_enum_v<T>) {
    return [NSNumber numberWithLongLong:static_cast<long long>(value)];
  } else {
    return toObjC(value);
  }
}

/// Nil for an absent one.
template <class T>
auto* toObjC(const std::optional<T>& value) {
  return value ? toObject(*value) : nil;
}

template <class T>
NSArray* toObjC(const std::vector<T>& list) {
  NSMutableArray* const array = [NSMutableArray arrayWithCapacity:list.size()];
  for (const T& item : list) [array addObject:toObject(item)];
  return array;
}

template <class T>
NSDictionary* toObjC(const std::map<std::string, T>& map) {
  NSMutableDictionary* const dictionary = [NSMutableDictionary dictionary];
  for (const auto& [key, value] : map) [dictionary setObject:toObject(value) forKey:toObjC(key)];
  return dictionary;
}

// From Objective-C to C++, as `Values.h` does for plain values.

/// The C++ object that a record's twin stands for.
template <HasTwin T>
auto& object(OvintaRecord* twin) {
  using HandleType = typename Handle<T>::Type;
  Native& native = [requireClass(twin, TwinClass<T>::get()) native];
  auto& value = static_cast<NativeOf<HandleType>&>(native).value;
  if constexpr (kIsShared<HandleType>) {
    return *value;
  } else {
    return value;
  }
}

/// The pointer by which the library knows the twin's object.
template <HasTwin T>
const auto& handle(OvintaRecord* twin) {
  Native& native = [requireClass(twin, TwinClass<T>::get()) native];
  return static_cast<NativeOf<typename Handle<T>::Type>&>(native).value;
}

/// Absent for nil, here and in all that follow.
template <HasTwin T>
std::optional<T> optionalObject(OvintaRecord* twin) {
  return twin ? std::optional<T>(object<T>(twin)) : std::nullopt;
}

template <HasTwin T>
auto optionalList(NSArray* twins) {
  std::optional<std::vector<typename Handle<T>::Type>> list;
  if (!twins) return list;
  list.emplace();
  for (id twin in requireClass(twins, [NSArray class])) list->push_back(handle<T>(twin));
  return list;
}

/// A whole number must be one that `T` holds.
template <class T>
std::optional<T> optionalNumber(NSNumber* number) {
  if (!number) return std::nullopt;
  const double value = [requireClass(number, [NSNumber class]) doubleValue];
  if constexpr (std::is_integral_v<T>) {
    static_assert(sizeof(T) < sizeof(double), "a double holds each exactly");
    requireArgument(value >= std::numeric_limits<T>::min() &&
                        value <= std::numeric_limits<T>::max() && value == std::trunc(value),
                    number);
  }
  return static_cast<T>(value);
}

/// The case of the enumeration that has the raw value.
template <class State>
State state(NSInteger rawValue) {
  const auto found = ovinta::stateFromRawValue<State>(rawValue);
  requireArgument(found.has_value(), toObject(rawValue));
  return *found;
}

inline std::optional<ovinta::platform::Date> optionalDate(NSDate* value) {
  return value ? std::optional(date(value)) : std::nullopt;
}

/// Runs a part of an initialiser that converts arguments; when one raises, the instance goes.
template <class Part>
auto initialising(OvintaRecord* instance, const Part& part) {
  @try {
    return part();
  } @catch (NSException*) {
    [instance release];
    @throw;
  }
}

}  // namespace twins

/// The getter of a property: what the member of the same name of `Cpp`, the C++ class that the file
/// is about, holds or answers.
#define OVINTA_GETTER(Type, name)                                                               \
  -(Type)name {                                                                                 \
    return static_cast<Type>(twins::toObjC(std::invoke(&Cpp::name, twins::object<Cpp>(self)))); \
  }
