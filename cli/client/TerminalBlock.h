#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace ovinta::cli {

/// The lines as a terminal of that size shows them without breaking one or scrolling: control
/// characters escaped, each cut to the width, the last ones left out.
std::vector<std::string> fitted(const std::vector<std::string>& lines, std::size_t rows,
                                std::size_t columns);

/// Lines that stay below everything else on standard output, where that is a terminal; nothing
/// otherwise. For one thread at a time. What it writes is not flushed.
class TerminalBlock {
 public:
  TerminalBlock();

  /// Puts the lines in place of those before.
  void show(std::vector<std::string> lines);
  /// Takes the lines away, before something else is printed.
  void erase();
  /// Shows the lines again that were taken away.
  void draw();
  bool isShown() const { return drawn_ > 0; }

 private:
  const bool isOnTerminal_;
  std::vector<std::string> lines_;
  /// Lines on the terminal above the cursor.
  std::size_t drawn_ = 0;
};

}  // namespace ovinta::cli
