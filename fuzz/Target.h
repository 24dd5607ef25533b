#pragma once

#include <string_view>
#include <vector>

namespace ovinta::fuzz {

/// A part of the library that takes what others have written, and the promises that it keeps
/// whatever that is. Each file of `targets/` makes one, as a static object.
struct Target {
  Target(std::string_view targetName, void (*runInput)(std::string_view input));

  std::string_view name;
  /// Takes one input. Whatever a run changes it also puts right again: the next one must not see
  /// it.
  void (*run)(std::string_view input);
};

/// Those of the program.
const std::vector<const Target*>& targets();

/// Ends the process, with the promise as its last words, where that does not hold.
void require(bool holds, std::string_view promise);

/// Takes the text up to the next line break, or the rest, off the front of the input.
std::string_view takeLine(std::string_view& input);

}  // namespace ovinta::fuzz
