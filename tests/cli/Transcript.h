#pragma once

#include <fstream>
#include <iterator>
#include <string>

namespace ovinta::test {

/// What a file of `transcripts/` holds: output of the command, or what it sends, as it is to stay.
/// Whoever means to change it records it anew.
inline std::string transcript(const std::string& name) {
  std::ifstream file(OVINTA_TRANSCRIPTS "/" + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace ovinta::test
