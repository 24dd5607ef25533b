#include "cli/client/TerminalBlock.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <iostream>
#include <utility>

#include "cli/client/HumanText.h"

namespace ovinta::cli {
namespace {

/// The text's beginning, of so many columns at most.
std::string cut(const std::string& text, std::size_t columns) {
  std::size_t end = 0;
  while (end < text.size()) {
    const Glyph glyph = firstGlyph(std::string_view(text).substr(end));
    if (glyph.columns > columns) break;
    columns -= glyph.columns;
    end += glyph.bytes;
  }
  return text.substr(0, end);
}

}  // namespace

std::vector<std::string> fitted(const std::vector<std::string>& lines, std::size_t rows,
                                std::size_t columns) {
  std::vector<std::string> result;
  // The cursor stands in a row of its own, and in the last column a terminal may break the line.
  for (const std::string& line : lines) {
    if (result.size() + 1 < rows) result.push_back(cut(visibleText(line), columns - 1));
  }
  return result;
}

TerminalBlock::TerminalBlock() : isOnTerminal_(::isatty(STDOUT_FILENO) == 1) {}

void TerminalBlock::show(std::vector<std::string> lines) {
  if (lines_ == lines) return;
  erase();
  lines_ = std::move(lines);
  draw();
}

void TerminalBlock::erase() {
  if (drawn_ > 0) std::cout << "\r\x1b[" << drawn_ << "A\x1b[J";
  drawn_ = 0;
}

void TerminalBlock::draw() {
  if (!isOnTerminal_ || lines_.empty()) return;
  winsize size{};
  const bool isKnown = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0;
  const std::size_t rows = isKnown && size.ws_row > 0 ? size.ws_row : 24;
  const std::size_t columns = isKnown && size.ws_col > 0 ? size.ws_col : 80;
  for (const std::string& line : fitted(lines_, rows, columns)) {
    std::cout << line << "\n";
    ++drawn_;
  }
}

}  // namespace ovinta::cli
