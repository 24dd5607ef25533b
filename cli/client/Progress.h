#pragma once

#include <mutex>
#include <string>

namespace ovinta::cli {

/// A line on standard error that tells how far a long command has come, where that is a terminal;
/// nothing otherwise. May be used from any thread.
class Progress {
 public:
  Progress();
  /// Takes the line away.
  ~Progress() { clear(); }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  bool isOnTerminal() const { return isOnTerminal_; }
  /// Puts the text in place of the one before.
  void show(const std::string& text);
  /// Takes the line away, before something else is printed.
  void clear();

 private:
  const bool isOnTerminal_;
  std::mutex mutex_;
  bool isShown_ = false;
};

}  // namespace ovinta::cli
