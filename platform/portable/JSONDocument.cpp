#include <cmath>
#include <memory>
#include <utility>

#include "platform/JSON.h"
#include "platform/portable/ParsedJSON.h"

namespace ovinta::platform {

namespace {

namespace dom = simdjson::dom;
using portable::handleAt;
using portable::ParsedJSON;
using portable::placeOf;

/// The greatest depth to which a value is copied, because values are copied, and copies destroyed,
/// recursively.
constexpr std::size_t kDeepestCopied = 1024;

/// The copy of a number: a double, unless it takes an integer to hold the number as it is written;
/// null beyond the range of doubles.
Value copyOfDouble(const ParsedJSON& document, const dom::element& element) {
  const auto value = document.nearestOf(element);
  if (!value) return nullptr;
  if (std::abs(*value) < 0x1p53 || std::abs(*value) >= 0x1p63) return *value;
  const auto integer = document.plainIntegerOf(element);
  if (!integer || *integer == static_cast<std::int64_t>(*value)) return *value;
  return *integer;
}

Value copyOf(const ParsedJSON& document, const dom::element& element, std::size_t depth) {
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
      return copyOfDouble(document, element);
    case dom::element_type::STRING:
      return std::string_view(element);
    case dom::element_type::ARRAY: {
      if (depth == kDeepestCopied) return nullptr;
      List list;
      for (const dom::element child : dom::array(element)) {
        list.push_back(copyOf(document, child, depth + 1));
      }
      return list;
    }
    case dom::element_type::OBJECT: {
      if (depth == kDeepestCopied) return nullptr;
      Dictionary dictionary;
      for (const auto& [key, child] : dom::object(element)) {
        dictionary.insert_or_assign(std::string(key), copyOf(document, child, depth + 1));
      }
      return dictionary;
    }
  }
  return nullptr;
}

}  // namespace

JSONDocument::JSONDocument(std::unique_ptr<ParsedJSON> parsed) : parsed_(std::move(parsed)) {}
JSONDocument::JSONDocument(JSONDocument&&) noexcept = default;
JSONDocument& JSONDocument::operator=(JSONDocument&&) noexcept = default;
JSONDocument::~JSONDocument() = default;

std::optional<JSONDocument> JSONDocument::parse(std::string_view text) {
  std::string copy;
  copy.reserve(text.size() + kRoom);
  return consume(std::move(copy.append(text)));
}

std::optional<JSONDocument> JSONDocument::consume(std::string text) {
  if (text.empty()) return std::nullopt;
  text.append(kRoom, ' ');
  auto parsed = std::make_unique<ParsedJSON>(std::move(text));
  if (!parsed->parse()) return std::nullopt;
  parsed->releaseText();
  return JSONDocument(std::move(parsed));
}

JSONValue JSONDocument::root() const { return parsed_->root(); }

std::optional<std::int64_t> JSONValue::integerAtPlace() const {
  return document_->integerOf(handleAt<dom::element>(content_.place));
}

std::optional<double> JSONValue::numberAtPlace() const {
  return document_->nearestOf(handleAt<dom::element>(content_.place));
}

Value JSONValue::copy() const {
  switch (kind_) {
    case Kind::null:
      return nullptr;
    case Kind::boolean:
      return content_.boolean;
    case Kind::string:
      return content_.string;
    case Kind::number:
      if (isInteger_) return content_.integer;
      break;
    case Kind::array:
    case Kind::object:
      break;
  }
  return copyOf(*document_, handleAt<dom::element>(content_.place), 0);
}

JSONArrayCursor::JSONArrayCursor(const JSONValue& array) : document_(array.document_) {
  if (array.kind() != JSONValue::Kind::array) return;
  const dom::array elements(handleAt<dom::element>(array.content_.place));
  position_ = placeOf(elements.begin());
  end_ = placeOf(elements.end());
  size_ = elements.size();
}

bool JSONArrayCursor::next(JSONValue& element) {
  if (position_ == end_) return false;
  auto iterator = handleAt<dom::array::iterator>(position_);
  document_->read(*iterator, element);
  position_ = placeOf(++iterator);
  return true;
}

JSONObjectCursor::JSONObjectCursor(const JSONValue& object) : document_(object.document_) {
  if (object.kind() != JSONValue::Kind::object) return;
  const dom::object members(handleAt<dom::element>(object.content_.place));
  position_ = placeOf(members.begin());
  end_ = placeOf(members.end());
}

bool JSONObjectCursor::next(std::string_view& key, JSONValue& value) {
  if (position_ == end_) return false;
  auto iterator = handleAt<dom::object::iterator>(position_);
  key = iterator.key();
  document_->read(iterator.value(), value);
  position_ = placeOf(++iterator);
  return true;
}

}  // namespace ovinta::platform
