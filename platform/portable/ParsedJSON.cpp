#include "platform/portable/ParsedJSON.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <utility>
#include <variant>
#include <vector>

#include "platform/portable/JSONNumber.h"
#include "platform/portable/JSONParsers.h"

namespace ovinta::platform::portable {

namespace {

namespace dom = simdjson::dom;

/// From this size on a text is given back although it takes a walk over the document: beyond it
/// memory counts more than time.
constexpr std::size_t kLargeText = std::size_t{4} << 20;

/// What stands in a text in the place of a number beyond the range of doubles.
constexpr double kLargest = std::numeric_limits<double>::max();

bool isWhole(double number) { return std::trunc(number) == number; }

/// Whether the parser takes the number; of those that JSON knows it refuses the large ones.
bool isHeldByParser(const JSONNumber& number) {
  if (!number.isWrittenAsInteger()) return std::isfinite(number.nearest());
  return number.integer() || (number.magnitude() && !number.isNegative());
}

/// Appends a number that the parser takes for a double, the nearest to the given one.
void appendHeld(std::string& text, double number) {
  if (!std::isfinite(number)) number = std::copysign(kLargest, number);
  std::array<char, 32> buffer;
  constexpr auto kForm = std::chars_format::scientific;
  const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, kForm).ptr;
  text.append(buffer.data(), end);
}

/// The text with doubles in the place of the numbers that the parser refuses for their size.
std::string withoutLargeNumbers(std::string_view text) {
  std::string result;
  std::size_t copied = 0;
  JSONNumberScanner numbers(text);
  for (auto token = numbers.next(); !token.empty(); token = numbers.next()) {
    const auto number = JSONNumber::read(token);
    if (!number || isHeldByParser(*number)) continue;
    const auto start = static_cast<std::size_t>(token.data() - text.data());
    result.append(text, copied, start - copied);
    appendHeld(result, number->nearest());
    copied = start + token.size();
  }
  return result.append(text, copied);
}

/// Walks all values of a document in the order of the text, to any depth. Ends when `visit`, which
/// gets each number, answers false.
template <class Visit>
void forEachNumber(const JSONValue& root, Visit visit) {
  std::vector<std::variant<JSONArrayCursor, JSONObjectCursor>> open;
  const auto enter = [&](const JSONValue& value) {
    if (value.kind() == JSONValue::Kind::array) open.emplace_back(JSONArrayCursor(value));
    if (value.kind() == JSONValue::Kind::object) open.emplace_back(JSONObjectCursor(value));
    return value.kind() != JSONValue::Kind::number || visit(value);
  };
  JSONValue value;
  std::string_view key;
  bool goesOn = enter(root);
  while (goesOn && !open.empty()) {
    auto* const array = std::get_if<JSONArrayCursor>(&open.back());
    const bool isThere =
        array ? array->next(value) : std::get<JSONObjectCursor>(open.back()).next(key, value);
    if (isThere) {
      goesOn = enter(value);
    } else {
      open.pop_back();
    }
  }
}

}  // namespace

static_assert(JSONDocument::kRoom >= simdjson::SIMDJSON_PADDING);

ParsedJSON::ParsedJSON(std::string text)
    : text_(std::move(text)), size_(text_.size() - JSONDocument::kRoom) {}

bool ParsedJSON::parse() {
  auto error =
      JSONParserLease()->parse_into_document(document_, text_.data(), size_, false).error();
  if (error == simdjson::NUMBER_ERROR || error == simdjson::DEPTH_ERROR) error = parseAnySize();
  return error == simdjson::SUCCESS;
}

/// Parses a text that was refused, perhaps only for the size of a number or for its depth, to both
/// of which the grammar sets no limit.
simdjson::error_code ParsedJSON::parseAnySize() {
  std::string tame = withoutLargeNumbers(text());
  const std::size_t size = tame.size();
  tame.append(simdjson::SIMDJSON_PADDING, ' ');
  const auto isOpening = [](char c) { return c == '[' || c == '{'; };
  const auto depth = static_cast<std::size_t>(std::ranges::count_if(tame, isOpening)) + 1;
  const JSONParserLease parser;
  const auto error = parser->allocate(size, std::max(simdjson::DEFAULT_MAX_DEPTH, depth));
  return error ? error : parser->parse_into_document(document_, tame.data(), size, false).error();
}

void ParsedJSON::releaseText() {
  if (size_ < kLargeText) return;
  bool needsText = false;
  forEachNumber(root(), [&](const JSONValue& number) {
    needsText = !number.isInteger_;
    return !needsText;
  });
  // An assignment would keep the memory.
  if (!needsText) std::string().swap(text_);
}

const ParsedJSON::WrittenNumber& ParsedJSON::writtenNumber(const dom::element& element) const {
  std::call_once(numbersAreFound_, [this] {
    JSONNumberScanner numbers(text());
    forEachNumber(root(), [&](const JSONValue& value) {
      const std::string_view token = numbers.next();
      // A fraction tells that its number is no integer, and is the nearest double there is.
      if (value.isInteger_ || !isWhole(double(handleAt<dom::element>(value.content_.place)))) {
        return true;
      }
      if (const auto number = JSONNumber::read(token)) {
        writtenNumbers_.insert(
            {value.content_.place, {number->integer(), number->nearest(), number->hasExponent()}});
      }
      return true;
    });
  });
  return writtenNumbers_.at(placeOf(element));
}

std::optional<std::int64_t> ParsedJSON::integerOf(const dom::element& element) const {
  if (element.type() == dom::element_type::UINT64) return std::nullopt;
  const double value(element);
  return isWhole(value) ? writtenNumber(element).integer : std::nullopt;
}

std::optional<double> ParsedJSON::nearestOf(const dom::element& element) const {
  const double value(element);
  if (std::abs(value) < kLargest) return value;
  const double nearest = writtenNumber(element).nearest;
  return std::isfinite(nearest) ? std::optional(nearest) : std::nullopt;
}

std::optional<std::int64_t> ParsedJSON::plainIntegerOf(const dom::element& element) const {
  if (!isWhole(double(element))) return std::nullopt;
  const WrittenNumber& number = writtenNumber(element);
  return number.hasExponent ? std::nullopt : number.integer;
}

}  // namespace ovinta::platform::portable
