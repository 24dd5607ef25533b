#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>

#include "OvintaSDK/model/wire/Field.h"
#include "OvintaSDK/model/wire/KeyIndex.h"
#include "OvintaSDK/model/wire/WireForm.h"

namespace ovinta::wire {

template <class T>
inline constexpr bool kIsOptional = false;
template <class T>
inline constexpr bool kIsOptional<std::optional<T>> = true;

/// Where the value of a field waits until the whole object was read; absent until its key was met.
template <class Value>
using Slot = std::conditional_t<kIsOptional<Value>, Value, std::optional<Value>>;

/// The slots of all fields of a record, in wire order.
template <class Record>
class Slots {
 public:
  /// Reads the members of the object, once, in the order of the text; of a key given twice the last
  /// counts, unknown keys are ignored, null counts as absent where the field may be absent.
  explicit Slots(const platform::JSONValue& object) {
    if (object.kind() != platform::JSONValue::Kind::object) throwMismatch(object, "an object");
    platform::JSONObjectCursor cursor(object);
    std::string_view key;
    platform::JSONValue value;
    while (cursor.next(key, value)) {
      const auto position = kIndex.find(key);
      if (!position) continue;
      try {
        kDecoders[*position](value, values_);
      } catch (platform::CodingError& error) {
        error.prependKey(key);
        throw;
      }
    }
  }

  /// Moves the value of a field out; a required one that was not met is an error.
  template <std::size_t I>
  auto take() {
    auto& slot = std::get<I>(values_);
    if constexpr (kIsOptional<typename FieldAt<Record, I>::Value>) {
      return std::move(slot);
    } else {
      using platform::CodingError;
      if (!slot) {
        throw CodingError(CodingError::Kind::keyNotFound,
                          "No value associated with key \"" + std::string(key<I>()) + "\".");
      }
      return *std::move(slot);
    }
  }

  /// Moves the values of all fields that `Owner` itself holds, or leads to, into a new one.
  template <class Owner>
  Owner assemble() {
    Owner owner{};
    forEachField<Record>([&](auto position) {
      if constexpr (std::is_same_v<typename FieldAt<Record, position()>::Owner, Owner>) {
        std::get<position()>(WireTable<Record>::kFields).in(owner) =
            this->template take<position()>();
      }
    });
    return owner;
  }

 private:
  using Positions = std::make_index_sequence<kFieldCount<Record>>;

  template <std::size_t... I>
  static std::tuple<Slot<typename FieldAt<Record, I>::Value>...> values(std::index_sequence<I...>);
  using Values = decltype(values(Positions{}));
  using Decode = void (*)(const platform::JSONValue&, Values&);

  template <std::size_t I>
  static constexpr std::string_view key() {
    return std::get<I>(WireTable<Record>::kFields).key;
  }

  template <std::size_t I>
  static void decodeInto(const platform::JSONValue& value, Values& values) {
    auto& slot = std::get<I>(values);
    using T = typename std::remove_cvref_t<decltype(slot)>::value_type;
    if (kIsOptional<typename FieldAt<Record, I>::Value> &&
        value.kind() == platform::JSONValue::Kind::null) {
      slot.reset();
    } else {
      slot = WireForm<T>::decode(value);
    }
  }

  template <std::size_t... I>
  static constexpr std::array<std::string_view, sizeof...(I)> keys(std::index_sequence<I...>) {
    return {key<I>()...};
  }
  template <std::size_t... I>
  static constexpr std::array<Decode, sizeof...(I)> decoders(std::index_sequence<I...>) {
    return {&decodeInto<I>...};
  }

  static constexpr KeyIndex<kFieldCount<Record>> kIndex{keys(Positions{})};
  static constexpr std::array<Decode, kFieldCount<Record>> kDecoders = decoders(Positions{});

  Values values_;
};

/// Writes a field's value under its key; an absent one is left out or, if the table says so, null.
template <class Members, class Owner>
void encodeField(platform::JSONWriter& writer, const Members& field, const Owner& owner) {
  const auto& value = field.in(owner);
  using T = std::remove_cvref_t<decltype(value)>;
  if constexpr (kIsOptional<T>) {
    if (!value && !field.writesNull) return;
    writer.key(field.key);
    if (!value) return writer.null();
    WireForm<typename T::value_type>::encode(writer, *value);
  } else {
    writer.key(field.key);
    WireForm<T>::encode(writer, value);
  }
}

/// Writes a record as an object. `parts` are the structures that the paths of its table start from:
/// mostly the record itself.
template <class Record, class... Parts>
void encodeRecord(platform::JSONWriter& writer, const Parts&... parts) {
  const std::tuple<const Parts&...> owners(parts...);
  writer.beginObject();
  forEachField<Record>([&](auto position) {
    using Owner = typename FieldAt<Record, position()>::Owner;
    encodeField(writer, std::get<position()>(WireTable<Record>::kFields),
                std::get<const Owner&>(owners));
  });
  writer.endObject();
}

/// Records with a table and plain members.
template <HasWireTable Record>
struct WireForm<Record> {
  static Record decode(const platform::JSONValue& value) {
    return Slots<Record>(value).template assemble<Record>();
  }
  static void encode(platform::JSONWriter& writer, const Record& record) {
    encodeRecord<Record>(writer, record);
  }
};

/// Records that are handed out by shared pointer.
template <HasWireTable Record>
struct WireForm<std::shared_ptr<const Record>> {
  static std::shared_ptr<const Record> decode(const platform::JSONValue& value) {
    return std::make_shared<const Record>(WireForm<Record>::decode(value));
  }
  static void encode(platform::JSONWriter& writer, const std::shared_ptr<const Record>& record) {
    WireForm<Record>::encode(writer, *record);
  }
};

/// The record under the key "data" of an answer. Throws `platform::CodingError`.
template <class T>
struct Envelope {
  T data;
};

template <class T>
struct WireTable<Envelope<T>> {
  static constexpr auto kFields = table(field("data", &Envelope<T>::data));
};

}  // namespace ovinta::wire
