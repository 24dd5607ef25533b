#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ovinta::sandbox {

/// Texts that look random and follow from the seed alone, the same on every machine. Not safe for
/// use from several threads.
class SeededGenerator {
 public:
  explicit SeededGenerator(std::uint64_t seed) : state_(seed) {}

  /// A text of that many characters of the alphabet, which must not be empty.
  std::string text(std::size_t length, std::string_view alphabet);

  /// The seed with which another generator continues where this one is.
  std::uint64_t state() const { return state_; }

  /// A number from 0 to 1, which it does not reach.
  double fraction();

 private:
  std::uint64_t next();

  std::uint64_t state_;
};

}  // namespace ovinta::sandbox
