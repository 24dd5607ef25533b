#include "tests/bindings/objc/TwinTable.h"

#include <fstream>
#include <regex>

namespace ovinta::test {

Selectors twinTable() {
  static const std::regex kTwin(R"(([+-])\[(\w+) ([\w:]+)\])");
  Selectors selectors;
  std::ifstream file(OVINTA_TWINS);
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with("#")) continue;
    for (std::sregex_iterator twin(line.begin(), line.end(), kTwin), end; twin != end; ++twin) {
      const std::string sign = (*twin)[1] == "+" ? "+" : "";
      selectors[(*twin)[2]].insert(sign + (*twin)[3].str());
    }
  }
  return selectors;
}

}  // namespace ovinta::test
