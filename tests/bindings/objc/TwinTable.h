#pragma once

#include <map>
#include <set>
#include <string>

namespace ovinta::test {

/// Selectors by class; those of class methods begin with "+".
using Selectors = std::map<std::string, std::set<std::string>>;

/// All that stand in the table of twins.
Selectors twinTable();

}  // namespace ovinta::test
