#pragma once

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>

namespace ovinta::test {

/// Selectors by class; those of class methods begin with "+".
using Selectors = std::map<std::string, std::set<std::string>>;

/// All that stand in the table of twins.
inline Selectors twinTable() {
  static const std::regex kTwin(R"(([+-])\[(\w+) ([\w: ]+)\])");
  Selectors selectors;
  std::ifstream file(OVINTA_TWINS);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("#")) continue;
    for (std::sregex_iterator twin(line.begin(), line.end(), kTwin), end; twin != end; ++twin) {
      const std::string sign = (*twin)[1] == "+" ? "+" : "";
      std::istringstream names((*twin)[3]);
      for (std::string name; names >> name;) selectors[(*twin)[2]].insert(sign + name);
    }
  }
  return selectors;
}

}  // namespace ovinta::test
