#pragma once

#include <simdjson.h>

#include <bit>
#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>
#include <vector>

namespace ovinta::platform::portable {

/// A parsed JSON text as simdjson lays it out, and the text, which knows more of some numbers.
class JSONTape : public simdjson::dom::document {
 public:
  explicit JSONTape(std::string_view text);

  /// Fills the tape; false when the text is not JSON. A number beyond the range of doubles is an
  /// infinite double on the tape, any other that 64 bits cannot hold the nearest double.
  bool parse();

  /// The value of the double at a position.
  double doubleAt(std::size_t position) const { return std::bit_cast<double>(tape[position + 1]); }

  /// The integer that the text has for the number at a position; absent when it has none or one
  /// beyond 64 bits.
  std::optional<std::int64_t> integerAt(std::size_t position) const;

  /// The integer that the text has for a double that is an integer; absent too when the text writes
  /// it with an exponent, as writers do with the shortest text that gives the double back.
  std::optional<std::int64_t> plainIntegerAt(std::size_t position) const;

 private:
  simdjson::error_code parseAnySize();
  std::string_view text() const { return {text_.get(), size_}; }

  template <class Visit>
  void forEachNumber(Visit visit) const;

  struct WholeDouble {
    std::size_t position;
    std::optional<std::int64_t> integer;
    bool hasExponent;
  };
  const WholeDouble& wholeDoubleAt(std::size_t position) const;

  const std::unique_ptr<char[]> text_;
  const std::size_t size_;
  /// The doubles that are integers, in the order of their positions. They are found when one is
  /// first asked for.
  mutable std::vector<WholeDouble> wholeDoubles_;
  mutable std::once_flag wholeDoublesAreKnown_;
};

}  // namespace ovinta::platform::portable
