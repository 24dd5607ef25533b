#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ovinta::platform {

/// Rules of text that need the Unicode character database or a number reader. Texts are UTF-8; none
/// of these depends on the user's locale. May be used from any thread.
class Text {
 public:
  virtual ~Text() = default;

  /// Whether the scalar is an upper-case or title-case letter (general categories Lu and Lt).
  virtual bool isUppercaseLetter(char32_t scalar) const = 0;

  /// The text with the first letter of each word in upper case and the rest in lower case; white
  /// space parts the words.
  virtual std::string capitalized(std::string_view text) const = 0;

  /// The number that the whole text stands for: sign, digits, point, exponent. Absent for anything
  /// else, among it blanks, hexadecimal numbers, infinities, not-a-numbers and numbers out of
  /// range.
  virtual std::optional<double> decimal(std::string_view text) const = 0;
};

}  // namespace ovinta::platform
