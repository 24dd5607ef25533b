#include "cli/manual/Suggestions.h"

#include <algorithm>
#include <cstddef>

#include "cli/manual/CommandTree.h"

namespace ovinta::cli {
namespace {

using Names = std::vector<std::string>;

constexpr std::size_t kMostSuggested = 3;
/// How short a beginning of a name can be.
constexpr std::size_t kShortestBeginning = 3;

/// The names that lead to the command, without that of the root.
std::string pathOf(const CLI::App& command) {
  const CLI::App* parent = command.get_parent();
  if (!parent) return "";
  const std::string path = pathOf(*parent);
  return path.empty() ? command.get_name() : path + " " + command.get_name();
}

std::size_t distance(const std::string& word, const std::string& candidate) {
  const bool isBeginning = word.size() >= kShortestBeginning && candidate.starts_with(word);
  return isBeginning ? 1 : distanceBetween(word, candidate);
}

const CLI::App& rootOf(const CLI::App& command) {
  return command.get_parent() ? rootOf(*command.get_parent()) : command;
}

}  // namespace

std::size_t distanceBetween(std::string_view one, std::string_view other) {
  std::vector<std::vector<std::size_t>> table(one.size() + 1,
                                              std::vector<std::size_t>(other.size() + 1));
  for (std::size_t i = 0; i <= one.size(); ++i) {
    for (std::size_t j = 0; j <= other.size(); ++j) {
      std::size_t& cell = table[i][j];
      if (i == 0 || j == 0) {
        cell = i + j;
        continue;
      }
      const std::size_t change = one[i - 1] == other[j - 1] ? 0 : 1;
      cell = std::min({table[i - 1][j] + 1, table[i][j - 1] + 1, table[i - 1][j - 1] + change});
      const bool isSwapped =
          i > 1 && j > 1 && one[i - 1] == other[j - 2] && one[i - 2] == other[j - 1];
      if (isSwapped) cell = std::min(cell, table[i - 2][j - 2] + 1);
    }
  }
  return table[one.size()][other.size()];
}

Names closest(const std::string& word, const Names& candidates) {
  Names best;
  std::size_t least = std::max<std::size_t>(1, word.size() / 3);
  for (const std::string& candidate : candidates) {
    const std::size_t away = distance(word, candidate);
    if (away > least) continue;
    if (away < least) best.clear();
    least = away;
    if (best.size() < kMostSuggested) best.push_back(candidate);
  }
  return best;
}

Names commandsLike(const std::string& word, const CLI::App& group) {
  Names names;
  for (const CLI::App* child : visibleCommands(group)) names.push_back(child->get_name());
  const std::string path = pathOf(group);
  Names found = closest(word, names);
  for (std::string& name : found) name.insert(0, path.empty() ? "" : path + " ");
  if (!found.empty()) return found;
  forEachCommand(rootOf(group), [&](const Names& place, const CLI::App&) {
    if (place.back() == word && found.size() < kMostSuggested) found.push_back(join(place, " "));
  });
  return found;
}

Names optionsLike(const std::string& name, const CLI::App& command) {
  Names names;
  for (const CLI::Option* option : allOptions(command)) {
    for (const std::string& candidate : namesOf(*option)) {
      if (candidate.starts_with("--")) names.push_back(candidate);
    }
  }
  return name.starts_with("--") ? closest(name, names) : Names();
}

Names choicesLike(const CLI::App& command) {
  for (const CLI::Option* option : allOptions(command)) {
    const Names choices = choicesOf(*option);
    if (choices.empty()) continue;
    for (const std::string& value : option->results()) {
      if (std::ranges::find(choices, value) == choices.end()) return closest(value, choices);
    }
  }
  return {};
}

}  // namespace ovinta::cli
