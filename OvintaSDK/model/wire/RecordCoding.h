#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
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

/// An empty record to read into; where the record has no default constructor, its table makes one.
template <class Record>
Record blank() {
  if constexpr (requires { WireTable<Record>::blank(); }) {
    return WireTable<Record>::blank();
  } else {
    return Record{};
  }
}

/// The values of a record's fields inside a JSON object.
template <class Record>
class Slots {
 public:
  /// Finds the values in one walk over the object's members; of a key given twice the last counts,
  /// unknown keys are ignored.
  Slots(const platform::JSONValue& object, const Dates& dates) : dates_(dates) {
    if (object.kind() != platform::JSONValue::Kind::object) throwMismatch(object, "an object");
    platform::JSONObjectCursor cursor(object);
    std::string_view key;
    platform::JSONValue value;
    while (cursor.next(key, value)) {
      if (const auto position = kIndex.find(key)) values_[*position] = value;
    }
  }

  /// Decodes the value of a field. An absent one, or null, is an error where one is required.
  template <std::size_t I>
  auto take() const {
    using Value = typename FieldAt<Record, I>::Value;
    try {
      if constexpr (kIsOptional<Value>) {
        const bool isPresent = values_[I] && values_[I]->kind() != platform::JSONValue::Kind::null;
        return isPresent ? Value(decode<typename Value::value_type>(*values_[I], dates_)) : Value();
      } else {
        return decode<Value>(required(I), dates_);
      }
    } catch (platform::CodingError& error) {
      if (values_[I]) error.prependKey(kKeys[I]);
      throw;
    }
  }

  /// Throws the error of the first field, in the order of reading, that cannot be decoded.
  void check() const {
    forEachFieldInReadingOrder<Record>(
        [this](auto position) { static_cast<void>(this->template take<position()>()); });
  }

  /// A new `Owner` with the values of all fields whose paths start from it.
  template <class Owner>
  Owner assemble() const {
    Owner owner = blank<Owner>();
    forEachField<Record>([&](auto position) {
      if constexpr (std::is_same_v<typename FieldAt<Record, position()>::Owner, Owner>) {
        std::get<position()>(WireTable<Record>::kFields).in(owner) =
            this->template take<position()>();
      }
    });
    return owner;
  }

 private:
  const platform::JSONValue& required(std::size_t position) const {
    using platform::CodingError;
    if (!values_[position]) {
      throw CodingError(CodingError::Kind::keyNotFound,
                        "No value associated with key \"" + std::string(kKeys[position]) + "\".");
    }
    return *values_[position];
  }

  static constexpr auto kKeys = std::apply(
      [](const auto&... field) { return std::array{field.key...}; }, WireTable<Record>::kFields);
  static constexpr KeyIndex<kFieldCount<Record>> kIndex{kKeys};

  const Dates& dates_;
  std::array<std::optional<platform::JSONValue>, kFieldCount<Record>> values_;
};

/// Writes a field's value under its key; an absent one is left out or, if the table says so, null.
template <class Members, class Owner>
void encodeField(platform::JSONWriter& writer, const Members& field, const Owner& owner,
                 const Dates& dates) {
  const auto& value = field.in(owner);
  using T = std::remove_cvref_t<decltype(value)>;
  try {
    if constexpr (kIsOptional<T>) {
      if (!value && !field.writesNull) return;
      writer.key(field.key);
      if (!value) return writer.null();
      encode(writer, *value, dates);
    } else {
      writer.key(field.key);
      encode(writer, value, dates);
    }
  } catch (platform::CodingError& error) {
    error.prependKey(field.key);
    throw;
  }
}

/// Writes a record as an object. `parts` are the structures that the paths of its table start from:
/// mostly the record itself.
template <class Record, class... Parts>
void encodeRecord(platform::JSONWriter& writer, const Dates& dates, const Parts&... parts) {
  const std::tuple<const Parts&...> owners(parts...);
  writer.beginObject();
  forEachField<Record>([&](auto position) {
    using Owner = typename FieldAt<Record, position()>::Owner;
    encodeField(writer, std::get<position()>(WireTable<Record>::kFields),
                std::get<const Owner&>(owners), dates);
  });
  writer.endObject();
}

/// The form of a record that has a table and plain members.
template <HasWireTable Record>
struct WireForm<Record> {
  static Record decode(const platform::JSONValue& value, const Dates& dates) {
    return Slots<Record>(value, dates).template assemble<Record>();
  }
  static void encode(platform::JSONWriter& writer, const Record& record, const Dates& dates) {
    encodeRecord<Record>(writer, dates, record);
  }
};

/// The form of a record that is handed out by shared pointer.
template <HasWireTable Record>
struct WireForm<std::shared_ptr<const Record>> {
  static std::shared_ptr<const Record> decode(const platform::JSONValue& value,
                                              const Dates& dates) {
    return std::make_shared<const Record>(WireForm<Record>::decode(value, dates));
  }
  static void encode(platform::JSONWriter& writer, const std::shared_ptr<const Record>& record,
                     const Dates& dates) {
    WireForm<Record>::encode(writer, *record, dates);
  }
};

}  // namespace ovinta::wire
