#include "cli/client/Progress.h"

#include <unistd.h>

#include <iostream>

#include "cli/client/HumanText.h"

namespace ovinta::cli {
namespace {

/// Moves the cursor to the first column and erases the line.
constexpr const char* kErase = "\r\x1b[K";

}  // namespace

Progress::Progress() : isOnTerminal_(::isatty(STDERR_FILENO) == 1) {}

void Progress::show(const std::string& text) {
  if (!isOnTerminal_) return;
  const std::lock_guard lock(mutex_);
  std::cerr << kErase << visibleText(text) << std::flush;
  isShown_ = true;
}

void Progress::clear() {
  const std::lock_guard lock(mutex_);
  if (isShown_) std::cerr << kErase << std::flush;
  isShown_ = false;
}

}  // namespace ovinta::cli
