#include "platform/portable/JSONTape.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <string>

#include "platform/portable/JSONNumber.h"
#include "platform/portable/JSONParsers.h"

namespace ovinta::platform::portable {

namespace {

/// Whether the double is an integer. The one that the text has may be another one, or none.
bool isWhole(double value) { return std::trunc(value) == value; }

/// Whether the parser takes the number; of those that JSON knows it refuses the large ones.
bool isHeldByParser(const JSONNumber& number) {
  if (!number.isWrittenAsInteger()) return std::isfinite(number.nearest());
  return number.integer() || (number.magnitude() && !number.isNegative());
}

/// The text with zeros in the place of the numbers that the parser refuses for their size.
std::string withoutLargeNumbers(std::string_view text) {
  constexpr std::string_view kZero = "0.0";
  std::string result(text);
  JSONNumberScanner numbers(text);
  for (auto token = numbers.next(); !token.empty(); token = numbers.next()) {
    const auto number = JSONNumber::read(token);
    if (!number || isHeldByParser(*number)) continue;
    const auto place = result.begin() + (token.data() - text.data());
    std::fill_n(place, token.size(), ' ');
    std::ranges::copy(kZero, place);
  }
  return result;
}

}  // namespace

JSONTape::JSONTape(std::string_view text)
    : text_(std::make_unique_for_overwrite<char[]>(text.size() + simdjson::SIMDJSON_PADDING)),
      size_(text.size()) {
  std::memcpy(text_.get(), text.data(), size_);
  std::memset(text_.get() + size_, 0, simdjson::SIMDJSON_PADDING);
}

bool JSONTape::parse() {
  auto error = JSONParserLease()->parse_into_document(*this, text_.get(), size_, false).error();
  if (error == simdjson::NUMBER_ERROR || error == simdjson::DEPTH_ERROR) error = parseAnySize();
  return error == simdjson::SUCCESS;
}

/// Parses a text that was refused, perhaps only for the size of a number or for its depth, to both
/// of which the grammar sets no limit.
simdjson::error_code JSONTape::parseAnySize() {
  std::string tame = withoutLargeNumbers(text());
  tame.resize(size_ + simdjson::SIMDJSON_PADDING);
  const auto isOpening = [](char c) { return c == '[' || c == '{'; };
  const auto depth = static_cast<std::size_t>(std::ranges::count_if(tame, isOpening)) + 1;
  const JSONParserLease parser;
  auto error = parser->allocate(size_, std::max(simdjson::DEFAULT_MAX_DEPTH, depth));
  if (!error) error = parser->parse_into_document(*this, tame.data(), size_, false).error();
  if (error) return error;
  forEachNumber([this](std::size_t position, char type, std::string_view token) {
    if (type != 'd' || doubleAt(position) != 0) return;
    if (const auto number = JSONNumber::read(token)) {
      tape[position + 1] = std::bit_cast<std::uint64_t>(number->nearest());
    }
  });
  return error;
}

/// Calls `visit` with the position, the type and the text of each number.
template <class Visit>
void JSONTape::forEachNumber(Visit visit) const {
  JSONNumberScanner numbers(text());
  const std::size_t end = static_cast<std::uint32_t>(tape[0]);
  for (std::size_t position = 1; position < end; ++position) {
    const char type = static_cast<char>(tape[position] >> 56);
    if (type != 'l' && type != 'u' && type != 'd') continue;
    visit(position, type, numbers.next());
    ++position;
  }
}

const JSONTape::WholeDouble& JSONTape::wholeDoubleAt(std::size_t position) const {
  std::call_once(wholeDoublesAreKnown_, [this] {
    forEachNumber([this](std::size_t at, char type, std::string_view token) {
      if (type != 'd' || !isWhole(doubleAt(at))) return;
      const auto number = JSONNumber::read(token);
      wholeDoubles_.push_back(
          {at, number ? number->integer() : std::nullopt, number && number->hasExponent()});
    });
  });
  return *std::ranges::lower_bound(wholeDoubles_, position, {}, &WholeDouble::position);
}

std::optional<std::int64_t> JSONTape::integerAt(std::size_t position) const {
  return isWhole(doubleAt(position)) ? wholeDoubleAt(position).integer : std::nullopt;
}

std::optional<std::int64_t> JSONTape::plainIntegerAt(std::size_t position) const {
  const WholeDouble& number = wholeDoubleAt(position);
  return number.hasExponent ? std::nullopt : number.integer;
}

}  // namespace ovinta::platform::portable
