#include "cli/client/Color.h"

#include <unistd.h>

#include <cstdlib>

namespace ovinta::cli {
namespace {

bool isSet(const char* variable) {
  const char* value = std::getenv(variable);
  return value && *value != '\0';
}

bool showsColors(int fileDescriptor) {
  const char* terminal = std::getenv("TERM");
  const bool knowsColors = terminal && *terminal != '\0' && std::string_view(terminal) != "dumb";
  return knowsColors && !isSet("NO_COLOR") && ::isatty(fileDescriptor) == 1;
}

}  // namespace

std::string colored(std::string_view text, Color color, int fileDescriptor) {
  if (!showsColors(fileDescriptor)) return std::string(text);
  return "\x1b[" + std::to_string(static_cast<int>(color)) + "m" + std::string(text) + "\x1b[0m";
}

Color colorOf(int status) {
  if (status >= 200 && status < 300) return Color::green;
  return status >= 300 && status < 500 ? Color::yellow : Color::red;
}

}  // namespace ovinta::cli
