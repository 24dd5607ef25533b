#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace ovinta::cli {

/// How many letters are to be added, dropped, changed or swapped with the next to make one text of
/// the other.
std::size_t distanceBetween(std::string_view one, std::string_view other);

/// The candidates that come closest to the word, if any is close enough to be meant: begun with it,
/// or with every third letter mistyped at most.
std::vector<std::string> closest(const std::string& word,
                                 const std::vector<std::string>& candidates);

/// The commands that a word below the group may stand for, with the names that lead there from the
/// root; those of its own name in other groups included.
std::vector<std::string> commandsLike(const std::string& word, const CLI::App& group);

/// The command's options that a name with its dashes may stand for.
std::vector<std::string> optionsLike(const std::string& name, const CLI::App& command);

/// What may be meant by values that are none of an option's choices.
std::vector<std::string> choicesLike(const CLI::App& command);

}  // namespace ovinta::cli
