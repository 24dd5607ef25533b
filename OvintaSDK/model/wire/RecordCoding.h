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
      const std::size_t position = kIndex.find(key);
      if (position == kFieldCount<Record>) continue;
      values_[position] = value;
      isThere_[position] = true;
    }
  }

  /// Decodes the value of a field. An absent one, or null, is an error where one is required; it
  /// leaves through `located`.
  template <std::size_t I>
  auto take() const {
    using Value = typename FieldAt<Record, I>::Value;
    const platform::JSONValue& value = values_[I];
    taken_ = I;
    if constexpr (std::is_same_v<Value, std::optional<std::string>>) {
      // The text is made in its place: orders have some thirty of them.
      if (const auto text = value.string()) return Value(std::in_place, *text);
    }
    if constexpr (kIsOptional<Value>) {
      // What is not there is null.
      if (value.kind() == platform::JSONValue::Kind::null) return Value();
      return Value(decode<typename Value::value_type>(value, dates_));
    } else {
      if (!isThere_[I]) throwMissing(kKeys[I]);
      return decode<Value>(value, dates_);
    }
  }

  /// What `read` gives, which takes fields. An error that one of them throws says which it was.
  template <class Read>
  auto located(Read read) const {
    try {
      return read();
    } catch (platform::CodingError& error) {
      if (isThere_[taken_]) error.prependKey(kKeys[taken_]);
      throw;
    }
  }

  /// Throws the error of the first field, in the order of reading, that cannot be decoded.
  void check() const {
    located([this] {
      forEachFieldInReadingOrder<Record>(
          [this](auto position) { static_cast<void>(this->template take<position()>()); });
    });
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
  static constexpr auto kKeys = std::apply(
      [](const auto&... field) { return std::array{field.key...}; }, WireTable<Record>::kFields);
  static constexpr KeyIndex<kFieldCount<Record>> kIndex{kKeys};

  const Dates& dates_;
  std::array<platform::JSONValue, kFieldCount<Record>> values_;
  std::array<bool, kFieldCount<Record>> isThere_{};
  /// The field that was taken last.
  mutable std::size_t taken_ = 0;
};

/// The key of a field, as it is written.
template <class Record, std::size_t I>
inline constexpr platform::WrittenKey kWrittenKey(std::get<I>(WireTable<Record>::kFields).key);

/// Writes the value of a record's field under its key; an absent one is left out or, if the table
/// says so, null.
template <class Record, std::size_t I, class Owner>
void encodeField(platform::JSONWriter& writer, const Owner& owner, const Dates& dates) {
  constexpr auto& kField = std::get<I>(WireTable<Record>::kFields);
  const auto& value = kField.in(owner);
  using T = std::remove_cvref_t<decltype(value)>;
  if constexpr (kIsOptional<T>) {
    if (!value && !kField.writesNull) return;
    writer.writtenKey(kWrittenKey<Record, I>);
    if (!value) return writer.null();
    encode(writer, *value, dates);
  } else {
    writer.writtenKey(kWrittenKey<Record, I>);
    encode(writer, value, dates);
  }
}

/// Writes a record as an object. `parts` are the structures that the paths of its table start from:
/// mostly the record itself.
template <class Record, class... Parts>
void encodeRecord(platform::JSONWriter& writer, const Dates& dates, const Parts&... parts) {
  const std::tuple<const Parts&...> owners(parts...);
  std::string_view key;
  try {
    writer.beginObject();
    forEachField<Record>([&](auto position) {
      using Owner = typename FieldAt<Record, position()>::Owner;
      key = std::get<position()>(WireTable<Record>::kFields).key;
      encodeField<Record, position()>(writer, std::get<const Owner&>(owners), dates);
    });
    writer.endObject();
  } catch (platform::CodingError& error) {
    error.prependKey(key);
    throw;
  }
}

/// The form of a record that has a table and plain members.
template <HasWireTable Record>
struct WireForm<Record> {
  static Record decode(const platform::JSONValue& value, const Dates& dates) {
    const Slots<Record> slots(value, dates);
    return slots.located([&] { return slots.template assemble<Record>(); });
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
