#include <simdjson.h>

#include <bit>
#include <cmath>

#include "platform/JSON.h"
#include "platform/linux/UTF8.h"

namespace ovinta::platform {

namespace {

namespace dom = simdjson::dom;

/// Reads the parser's handle out of the header's opaque pair, or the other way round.
template <class To, class From>
To as(const From& from) {
  static_assert(sizeof(To) == sizeof(From));
  return std::bit_cast<To>(from);
}

/// simdjson keeps the code for this processor in static objects made on first use. Made while the
/// program is loaded they outlast the exit handlers that wait for threads, which may be parsing.
[[maybe_unused]] const bool kIsChosen = !simdjson::get_active_implementation()->name().empty();

/// Texts up to this size are parsed with working memory that the thread keeps.
constexpr std::size_t kLargestKept = std::size_t{1} << 20;

simdjson::error_code parseInto(dom::document& document, std::string_view text) {
  if (text.size() > kLargestKept) {
    dom::parser parser;
    return parser.parse_into_document(document, text.data(), text.size()).error();
  }
  thread_local dom::parser parser;
  return parser.parse_into_document(document, text.data(), text.size()).error();
}

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// The text with a fraction put behind each integer that may not fit 64 bits: the grammar sets no
/// limit, while the parser refuses what it cannot hold. Only for a text that was refused.
std::string withLongIntegersAsDecimals(std::string_view text) {
  constexpr std::size_t kShortestLong = 20;  // -9223372036854775809, 18446744073709551616
  std::string result;
  bool inString = false;
  for (std::size_t i = 0; i < text.size();) {
    const std::size_t start = i++;
    const bool inNumber = !inString && (text[start] == '-' || isDigit(text[start]));
    if (text[start] == '"') {
      inString = !inString;
    } else if (inString && text[start] == '\\') {
      i = std::min(i + 1, text.size());
    } else if (inNumber) {
      i = std::min(text.find_first_not_of("0123456789.eE+-", i), text.size());
    }
    const std::string_view token = text.substr(start, i - start);
    result += token;
    if (inNumber && token.size() >= kShortestLong &&
        token.find_first_of(".eE") == std::string_view::npos) {
      result += ".0";
    }
  }
  return result;
}

std::optional<std::int64_t> exactInteger(double number) {
  constexpr double kLimit = 0x1p63;
  if (number < -kLimit || number >= kLimit || std::trunc(number) != number) return std::nullopt;
  return static_cast<std::int64_t>(number);
}

template <class T>
std::optional<T> get(const dom::element& element) {
  T value;
  if (element.get(value) != simdjson::SUCCESS) return std::nullopt;
  return value;
}

Value copyOf(const dom::element& element) {
  switch (element.type()) {
    case dom::element_type::NULL_VALUE:
      return nullptr;
    case dom::element_type::BOOL:
      return bool(element);
    case dom::element_type::INT64:
      return std::int64_t(element);
    case dom::element_type::UINT64:
    case dom::element_type::DOUBLE:
      return double(element);
    case dom::element_type::STRING:
      return std::string_view(element);
    case dom::element_type::ARRAY: {
      List list;
      for (const dom::element child : dom::array(element)) list.push_back(copyOf(child));
      return list;
    }
    case dom::element_type::OBJECT: {
      Dictionary dictionary;
      for (const auto& [key, child] : dom::object(element)) {
        dictionary.insert_or_assign(std::string(key), copyOf(child));
      }
      return dictionary;
    }
  }
  return nullptr;
}

}  // namespace

bool linux::isUTF8(std::string_view bytes) {
  return simdjson::validate_utf8(bytes.data(), bytes.size());
}

struct JSONDocument::Parsed {
  dom::document document;
};

JSONDocument::JSONDocument(std::unique_ptr<Parsed> parsed) : parsed_(std::move(parsed)) {}
JSONDocument::JSONDocument(JSONDocument&&) noexcept = default;
JSONDocument& JSONDocument::operator=(JSONDocument&&) noexcept = default;
JSONDocument::~JSONDocument() = default;

std::optional<JSONDocument> JSONDocument::parse(std::string_view text) {
  if (text.empty()) return std::nullopt;
  auto parsed = std::make_unique<Parsed>();
  auto error = parseInto(parsed->document, text);
  if (error == simdjson::NUMBER_ERROR) {
    error = parseInto(parsed->document, withLongIntegersAsDecimals(text));
  }
  if (error != simdjson::SUCCESS) return std::nullopt;
  return JSONDocument(std::move(parsed));
}

JSONValue JSONDocument::root() const {
  JSONValue value;
  value.storage_ = as<JSONValue::Storage>(parsed_->document.root());
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
  const auto element = as<dom::element>(storage_);
  if (element.type() != dom::element_type::DOUBLE) return get<std::int64_t>(element);
  return exactInteger(double(element));
}

std::optional<double> JSONValue::number() const { return get<double>(as<dom::element>(storage_)); }

std::optional<std::string_view> JSONValue::string() const {
  return get<std::string_view>(as<dom::element>(storage_));
}

Value JSONValue::copy() const { return copyOf(as<dom::element>(storage_)); }

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
