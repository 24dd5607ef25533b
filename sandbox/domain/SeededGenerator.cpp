#include "sandbox/domain/SeededGenerator.h"

namespace ovinta::sandbox {

std::string SeededGenerator::text(std::size_t length, std::string_view alphabet) {
  std::string text;
  while (text.size() < length) text += alphabet[next() % alphabet.size()];
  return text;
}

// As many bits as a double holds.
double SeededGenerator::fraction() { return static_cast<double>(next() >> 11) * 0x1p-53; }

// SplitMix64, a counter whose bits are well mixed: it is small, and gives the same numbers with
// every standard library.
std::uint64_t SeededGenerator::next() {
  state_ += 0x9E3779B97F4A7C15u;
  std::uint64_t mixed = state_;
  mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9u;
  mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBu;
  return mixed ^ (mixed >> 31);
}

}  // namespace ovinta::sandbox
