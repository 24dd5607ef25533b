#pragma once

#include <string>
#include <string_view>

namespace ovinta::cli {

/// The colours that the command uses, by their numbers on a terminal.
enum class Color { red = 31, green = 32, yellow = 33 };

/// The text in the colour, where what is written there, standard output or standard error by its
/// number, is shown by a terminal that knows colours to people who have not set `NO_COLOR`;
/// otherwise the text as it is. What is in the text must be visible already.
std::string colored(std::string_view text, Color color, int fileDescriptor);

/// The colour for the status of an answer.
Color colorOf(int status);

}  // namespace ovinta::cli
