#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ovinta::platform::portable {

/// Walks the numbers of a JSON text in their order. Where the text is malformed it may find what is
/// no number.
class JSONNumberScanner {
 public:
  explicit JSONNumberScanner(std::string_view text) : text_(text) {}

  /// The next number, a part of the text; empty at the end.
  std::string_view next();

 private:
  void skipString();

  std::string_view text_;
  std::size_t position_ = 0;
};

/// A number of a JSON text, without loss: digits * 10^exponent.
class JSONNumber {
 public:
  /// The number that the text is; absent when the grammar of JSON has no such number.
  static std::optional<JSONNumber> read(std::string_view text);

  bool isNegative() const { return isNegative_; }
  /// Whether it is written without fraction and exponent.
  bool isWrittenAsInteger() const { return isWrittenAsInteger_; }
  bool hasExponent() const { return hasExponent_; }
  /// The number's value when that is an integer of 64 bits.
  std::optional<std::int64_t> integer() const;
  /// The number without its sign, when that is an integer of 64 bits.
  std::optional<std::uint64_t> magnitude() const;
  /// The nearest double; infinite beyond the range of doubles.
  double nearest() const;

 private:
  std::string_view text_;
  bool isNegative_ = false;
  bool isWrittenAsInteger_ = true;
  bool hasExponent_ = false;
  /// The significant digits, without zeros at either end; empty for the number zero.
  std::string digits_;
  std::int64_t exponent_ = 0;
};

}  // namespace ovinta::platform::portable
