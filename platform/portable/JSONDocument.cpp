#include <bit>
#include <cmath>

#include "platform/JSON.h"
#include "platform/portable/JSONTape.h"

namespace ovinta::platform {

namespace {

namespace dom = simdjson::dom;
using portable::JSONTape;

/// The greatest depth to which a value is copied, because values are copied, and copies destroyed,
/// recursively.
constexpr std::size_t kDeepestCopied = 1024;

/// A place on a tape: what simdjson's handles and the opaque pair of the header hold.
struct Place {
  const dom::document* document;
  std::size_t position;

  const JSONTape& tape() const { return static_cast<const JSONTape&>(*document); }
};

/// Turns places, simdjson's handles and the header's pair into each other.
template <class To, class From>
To as(const From& from) {
  static_assert(sizeof(To) == sizeof(From));
  return std::bit_cast<To>(from);
}

template <class T>
std::optional<T> get(const dom::element& element) {
  T value;
  if (element.get(value) != simdjson::SUCCESS) return std::nullopt;
  return value;
}

std::optional<std::int64_t> integerOf(const dom::element& element) {
  if (element.type() != dom::element_type::DOUBLE) return get<std::int64_t>(element);
  const auto place = as<Place>(element);
  return place.tape().integerAt(place.position);
}

/// The copy of a number: a double, unless it takes an integer to hold the number as it is written;
/// null beyond the range of doubles.
Value copyOfDouble(const dom::element& element) {
  const double value(element);
  if (!std::isfinite(value)) return nullptr;
  if (std::abs(value) < 0x1p53 || std::abs(value) >= 0x1p63) return value;
  const auto place = as<Place>(element);
  const auto integer = place.tape().plainIntegerAt(place.position);
  if (!integer || *integer == static_cast<std::int64_t>(value)) return value;
  return *integer;
}

Value copyOf(const dom::element& element, std::size_t depth) {
  switch (element.type()) {
    case dom::element_type::NULL_VALUE:
      return nullptr;
    case dom::element_type::BOOL:
      return bool(element);
    case dom::element_type::INT64:
      return std::int64_t(element);
    case dom::element_type::UINT64:
      return double(element);
    case dom::element_type::DOUBLE:
      return copyOfDouble(element);
    case dom::element_type::STRING:
      return std::string_view(element);
    case dom::element_type::ARRAY: {
      if (depth == kDeepestCopied) return nullptr;
      List list;
      for (const dom::element child : dom::array(element)) list.push_back(copyOf(child, depth + 1));
      return list;
    }
    case dom::element_type::OBJECT: {
      if (depth == kDeepestCopied) return nullptr;
      Dictionary dictionary;
      for (const auto& [key, child] : dom::object(element)) {
        dictionary.insert_or_assign(std::string(key), copyOf(child, depth + 1));
      }
      return dictionary;
    }
  }
  return nullptr;
}

}  // namespace

struct JSONDocument::Parsed : JSONTape {
  using JSONTape::JSONTape;
};

JSONDocument::JSONDocument(std::unique_ptr<Parsed> parsed) : parsed_(std::move(parsed)) {}
JSONDocument::JSONDocument(JSONDocument&&) noexcept = default;
JSONDocument& JSONDocument::operator=(JSONDocument&&) noexcept = default;
JSONDocument::~JSONDocument() = default;

std::optional<JSONDocument> JSONDocument::parse(std::string_view text) {
  if (text.empty()) return std::nullopt;
  auto parsed = std::make_unique<Parsed>(text);
  if (!parsed->parse()) return std::nullopt;
  return JSONDocument(std::move(parsed));
}

JSONValue JSONDocument::root() const {
  JSONValue value;
  value.storage_ = as<JSONValue::Storage>(parsed_->root());
  return value;
}

JSONValue::Kind JSONValue::kind() const {
  switch (as<dom::element>(storage_).type()) {
    case dom::element_type::BOOL:
      return Kind::boolean;
    case dom::element_type::INT64:
    case dom::element_type::UINT64:
    case dom::element_type::DOUBLE:
      return Kind::number;
    case dom::element_type::STRING:
      return Kind::string;
    case dom::element_type::ARRAY:
      return Kind::array;
    case dom::element_type::OBJECT:
      return Kind::object;
    case dom::element_type::NULL_VALUE:
      break;
  }
  return Kind::null;
}

std::optional<bool> JSONValue::boolean() const { return get<bool>(as<dom::element>(storage_)); }

std::optional<std::int64_t> JSONValue::integer() const {
  return integerOf(as<dom::element>(storage_));
}

std::optional<double> JSONValue::number() const {
  const auto value = get<double>(as<dom::element>(storage_));
  return value && std::isfinite(*value) ? value : std::nullopt;
}

std::optional<std::string_view> JSONValue::string() const {
  return get<std::string_view>(as<dom::element>(storage_));
}

Value JSONValue::copy() const { return copyOf(as<dom::element>(storage_), 0); }

JSONArrayCursor::JSONArrayCursor(const JSONValue& array) {
  const auto elements = get<dom::array>(as<dom::element>(array.storage_));
  if (!elements) return;
  position_ = as<JSONValue::Storage>(elements->begin());
  end_ = as<JSONValue::Storage>(elements->end());
  size_ = elements->size();
}

bool JSONArrayCursor::next(JSONValue& element) {
  if (position_.index == end_.index) return false;
  auto iterator = as<dom::array::iterator>(position_);
  element.storage_ = as<JSONValue::Storage>(*iterator);
  position_ = as<JSONValue::Storage>(++iterator);
  return true;
}

JSONObjectCursor::JSONObjectCursor(const JSONValue& object) {
  const auto members = get<dom::object>(as<dom::element>(object.storage_));
  if (!members) return;
  position_ = as<JSONValue::Storage>(members->begin());
  end_ = as<JSONValue::Storage>(members->end());
}

bool JSONObjectCursor::next(std::string_view& key, JSONValue& value) {
  if (position_.index == end_.index) return false;
  auto iterator = as<dom::object::iterator>(position_);
  key = iterator.key();
  value.storage_ = as<JSONValue::Storage>(iterator.value());
  position_ = as<JSONValue::Storage>(++iterator);
  return true;
}

}  // namespace ovinta::platform
