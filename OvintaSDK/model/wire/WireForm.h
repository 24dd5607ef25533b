#pragma once

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "OvintaSDK/core/Dates.h"
#include "OvintaSDK/model/StateTable.h"
#include "platform/Date.h"
#include "platform/JSON.h"
#include "platform/UUID.h"

namespace ovinta {
struct PickupWindow;
}

namespace ovinta::wire {

/// How a type is read from and written to JSON: `decode(JSONValue)` and `encode(JSONWriter&,
/// value)`, each with the `Dates` as a last argument where the type holds dates. Both throw
/// `platform::CodingError`.
template <class T>
struct WireForm;

template <class T>
T decode(const platform::JSONValue& value, const Dates& dates) {
  if constexpr (requires { WireForm<T>::decode(value, dates); }) {
    return WireForm<T>::decode(value, dates);
  } else {
    return WireForm<T>::decode(value);
  }
}

template <class T>
void encode(platform::JSONWriter& writer, const T& value, const Dates& dates) {
  if constexpr (requires { WireForm<T>::encode(writer, value, dates); }) {
    WireForm<T>::encode(writer, value, dates);
  } else {
    WireForm<T>::encode(writer, value);
  }
}

/// The document of a JSON text; `consumeDocument` is for a text that nobody needs any more. Both
/// throw `platform::CodingError`.
platform::JSONDocument parseDocument(std::string_view text);
platform::JSONDocument consumeDocument(std::string text);

/// Throws the error for a required key that an object lacks.
[[noreturn]] void throwMissing(std::string_view key);

/// Throws the error for a value of another kind than the one asked for; null counts as no value.
[[noreturn]] void throwMismatch(const platform::JSONValue& value, std::string_view expected);

/// Throws the error for a value that is no integer of 64 bits, or no double: it is of another kind,
/// or a number that is too large.
[[noreturn]] void throwNoInteger(const platform::JSONValue& value);
[[noreturn]] void throwNoNumber(const platform::JSONValue& value);

/// The decoded value when it is present; otherwise throws the error for it.
template <class T>
T expect(std::optional<T> decoded, const platform::JSONValue& value, std::string_view expected) {
  if (!decoded) throwMismatch(value, expected);
  return *std::move(decoded);
}

template <>
struct WireForm<std::string> {
  static std::string decode(const platform::JSONValue& value) {
    return std::string(expect(value.string(), value, "a string"));
  }
  static void encode(platform::JSONWriter& writer, const std::string& text) { writer.string(text); }
};

template <>
struct WireForm<bool> {
  static bool decode(const platform::JSONValue& value) {
    return expect(value.boolean(), value, "a boolean");
  }
  static void encode(platform::JSONWriter& writer, bool flag) { writer.boolean(flag); }
};

template <>
struct WireForm<std::int64_t> {
  static std::int64_t decode(const platform::JSONValue& value) {
    if (const auto number = value.integer()) return *number;
    throwNoInteger(value);
  }
  static void encode(platform::JSONWriter& writer, std::int64_t number) { writer.integer(number); }
};

template <>
struct WireForm<std::uint16_t> {
  static std::uint16_t decode(const platform::JSONValue& value);
  static void encode(platform::JSONWriter& writer, std::uint16_t number) { writer.integer(number); }
};

template <>
struct WireForm<double> {
  static double decode(const platform::JSONValue& value) {
    if (const auto number = value.number()) return *number;
    throwNoNumber(value);
  }
  static void encode(platform::JSONWriter& writer, double number) { writer.number(number); }
};

/// A float is a smoothed measure, which is written only, in the width in which it is kept.
template <>
struct WireForm<float> {
  static void encode(platform::JSONWriter& writer, float number) { writer.number(number); }
};

template <>
struct WireForm<platform::UUID> {
  static platform::UUID decode(const platform::JSONValue& value);
  static void encode(platform::JSONWriter& writer, const platform::UUID& uuid);
};

/// An instant is a text in the form of the service, e.g. "2021-03-04T20:30:00.000Z".
template <>
struct WireForm<platform::Date> {
  static platform::Date decode(const platform::JSONValue& value, const Dates& dates);
  static void encode(platform::JSONWriter& writer, platform::Date date, const Dates& dates);
};

/// A pickup window is a text of two instants in the device's zone, joined by "/".
template <>
struct WireForm<PickupWindow> {
  static PickupWindow decode(const platform::JSONValue& value, const Dates& dates);
  static void encode(platform::JSONWriter& writer, const PickupWindow& window, const Dates& dates);
};

template <class State>
requires requires { StateTable<State>::kRows; }
struct WireForm<State> {
  static State decode(const platform::JSONValue& value) {
    using platform::CodingError;
    const auto state = stateFromWireString<State>(expect(value.string(), value, "a string"));
    if (!state) throw CodingError(CodingError::Kind::valueNotFound, "Unknown Value");
    return *state;
  }
  static void encode(platform::JSONWriter& writer, State state) {
    using platform::CodingError;
    const StateRow<State>* row = findStateRow(state);
    if (!row) throw CodingError(CodingError::Kind::invalidValue, "Invalid Value");
    writer.string(row->wireString);
  }
};

template <class T>
struct WireForm<std::vector<T>> {
  static std::vector<T> decode(const platform::JSONValue& value, const Dates& dates) {
    if (value.kind() != platform::JSONValue::Kind::array) throwMismatch(value, "an array");
    platform::JSONArrayCursor cursor(value);
    std::vector<T> elements;
    elements.reserve(cursor.size());
    platform::JSONValue element;
    while (cursor.next(element)) {
      try {
        elements.push_back(wire::decode<T>(element, dates));
      } catch (platform::CodingError& error) {
        error.prependIndex(elements.size());
        throw;
      }
    }
    return elements;
  }
  static void encode(platform::JSONWriter& writer, const std::vector<T>& elements,
                     const Dates& dates) {
    writer.beginArray();
    for (std::size_t index = 0; index < elements.size(); ++index) {
      try {
        wire::encode(writer, elements[index], dates);
      } catch (platform::CodingError& error) {
        error.prependIndex(index);
        throw;
      }
    }
    writer.endArray();
  }
};

}  // namespace ovinta::wire
