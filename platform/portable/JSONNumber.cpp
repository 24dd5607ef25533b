#include "platform/portable/JSONNumber.h"

#include <algorithm>
#include <charconv>
#include <limits>

namespace ovinta::platform::portable {

namespace {

/// An exponent of this size makes a number infinite or zero, however many digits a text has.
constexpr std::int64_t kLargestExponent = 1'000'000'000'000'000;

constexpr bool isDigit(char c) { return c >= '0' && c <= '9'; }

/// Takes the first character off the text if it is one of these.
bool take(std::string_view& text, std::string_view characters) {
  if (text.empty() || characters.find(text.front()) == std::string_view::npos) return false;
  text.remove_prefix(1);
  return true;
}

/// Takes the digits off the front of the text.
std::string_view takeDigits(std::string_view& text) {
  const auto end = std::ranges::find_if_not(text, isDigit);
  const auto digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
  text.remove_prefix(digits.size());
  return digits;
}

}  // namespace

std::string_view JSONNumberScanner::next() {
  while (position_ < text_.size()) {
    const char c = text_[position_];
    if (c == '"') {
      skipString();
    } else if (c == '-' || isDigit(c)) {
      const std::size_t start = position_;
      position_ = std::min(text_.find_first_not_of("0123456789.eE+-", start), text_.size());
      return text_.substr(start, position_ - start);
    } else {
      ++position_;
    }
  }
  return {};
}

void JSONNumberScanner::skipString() {
  ++position_;
  while (position_ < text_.size() && text_[position_] != '"') {
    position_ += text_[position_] == '\\' ? 2 : 1;
  }
  ++position_;
}

std::optional<JSONNumber> JSONNumber::read(std::string_view text) {
  JSONNumber number;
  number.text_ = text;
  number.isNegative_ = take(text, "-");
  const auto whole = takeDigits(text);
  if (whole.empty() || (whole.size() > 1 && whole.front() == '0')) return std::nullopt;
  number.digits_ = whole;
  if (take(text, ".")) {
    const auto fraction = takeDigits(text);
    if (fraction.empty()) return std::nullopt;
    number.isWrittenAsInteger_ = false;
    number.digits_ += fraction;
    number.exponent_ = -static_cast<std::int64_t>(fraction.size());
  }
  if (take(text, "eE")) {
    const bool isBelowOne = text.starts_with('-');
    take(text, "+-");
    const auto power = takeDigits(text);
    if (power.empty()) return std::nullopt;
    number.isWrittenAsInteger_ = false;
    number.hasExponent_ = true;
    std::int64_t exponent = 0;
    const auto read = std::from_chars(power.data(), power.data() + power.size(), exponent);
    if (read.ec != std::errc() || exponent > kLargestExponent) exponent = kLargestExponent;
    number.exponent_ += isBelowOne ? -exponent : exponent;
  }
  if (!text.empty()) return std::nullopt;
  const std::size_t used = number.digits_.find_last_not_of('0') + 1;
  number.exponent_ += static_cast<std::int64_t>(number.digits_.size() - used);
  number.digits_.resize(used);
  number.digits_.erase(0, number.digits_.find_first_not_of('0'));
  return number;
}

std::optional<std::uint64_t> JSONNumber::magnitude() const {
  constexpr std::size_t kLongest = std::numeric_limits<std::uint64_t>::digits10 + 1;
  if (digits_.empty()) return 0;
  const auto zeros = static_cast<std::uint64_t>(exponent_);
  if (exponent_ < 0 || zeros > kLongest || digits_.size() + zeros > kLongest) return std::nullopt;
  const std::string written = digits_ + std::string(zeros, '0');
  std::uint64_t value = 0;
  const auto read = std::from_chars(written.data(), written.data() + written.size(), value);
  return read.ec == std::errc() ? std::optional(value) : std::nullopt;
}

std::optional<std::int64_t> JSONNumber::integer() const {
  constexpr std::uint64_t kLimit = std::uint64_t{1} << 63;
  const auto size = magnitude();
  if (!size || *size > kLimit || (*size == kLimit && !isNegative_)) return std::nullopt;
  // The negation of an unsigned number is defined for 2^63 too, that of a signed one is not.
  return static_cast<std::int64_t>(isNegative_ ? -*size : *size);
}

double JSONNumber::nearest() const {
  double value = 0;
  const auto read = std::from_chars(text_.data(), text_.data() + text_.size(), value);
  if (read.ec == std::errc()) return value;
  const bool isLarge = static_cast<std::int64_t>(digits_.size()) + exponent_ > 0;
  value = isLarge ? std::numeric_limits<double>::infinity() : 0;
  return isNegative_ ? -value : value;
}

}  // namespace ovinta::platform::portable
