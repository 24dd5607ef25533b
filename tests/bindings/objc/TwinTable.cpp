#include "tests/bindings/objc/TwinTable.h"

#include <fstream>
#include <regex>
#include <sstream>

namespace ovinta::test {

Selectors twinTable() {
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
