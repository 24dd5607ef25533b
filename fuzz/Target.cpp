#include "fuzz/Target.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace ovinta::fuzz {
namespace {

std::vector<const Target*>& made() {
  static std::vector<const Target*> targets;
  return targets;
}

}  // namespace

Target::Target(std::string_view targetName, void (*runInput)(std::string_view input))
    : name(targetName), run(runInput) {
  made().push_back(this);
}

const std::vector<const Target*>& targets() { return made(); }

void require(bool holds, std::string_view promise) {
  if (holds) return;
  std::cerr << "Broken: " << promise << std::endl;
  std::abort();
}

std::string_view takeLine(std::string_view& input) {
  const std::string_view line = input.substr(0, input.find('\n'));
  input.remove_prefix(std::min(line.size() + 1, input.size()));
  return line;
}

}  // namespace ovinta::fuzz
