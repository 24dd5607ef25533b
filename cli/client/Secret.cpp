#include "cli/client/Secret.h"

#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <iostream>

namespace ovinta::cli {
namespace {

/// The signals that may end a process while it waits for input.
constexpr std::array kEndingSignals{SIGINT, SIGTERM, SIGHUP, SIGQUIT};

/// Keeps a terminal from showing what is typed, as long as it lives, and no longer than the process
/// does. There may be one at a time.
class HiddenInput {
 public:
  HiddenInput() : isTerminal_(::tcgetattr(STDIN_FILENO, &before) == 0) {
    if (!isTerminal_) return;
    struct sigaction action {};
    action.sa_handler = [](int number) {
      ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
      ::raise(number);
    };
    // Raised once more, the signal has its default action.
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < kEndingSignals.size(); ++i) {
      ::sigaction(kEndingSignals.at(i), &action, &actions_.at(i));
    }
    termios hidden = before;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
  }
  ~HiddenInput() {
    if (!isTerminal_) return;
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before);
    for (std::size_t i = 0; i < kEndingSignals.size(); ++i) {
      ::sigaction(kEndingSignals.at(i), &actions_.at(i), nullptr);
    }
  }
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

  bool isTerminal() const { return isTerminal_; }

 private:
  /// The terminal's settings from before; static, so that a signal's handler can reach them.
  static inline termios before{};
  bool isTerminal_;
  std::array<struct sigaction, kEndingSignals.size()> actions_{};
};

std::string readLine(const std::string& name) {
  const HiddenInput input;
  if (input.isTerminal()) std::cerr << name << ": " << std::flush;
  std::string line;
  const bool isRead = static_cast<bool>(std::getline(std::cin, line));
  if (input.isTerminal()) std::cerr << "\n";
  if (!isRead) throw CLI::ValidationError("standard input has no line for it");
  return line;
}

}  // namespace

CLI::Option* keepSecret(CLI::Option* option, const std::string& variable) {
  return option->envname(variable)->transform([name = option->get_name()](const std::string& text) {
    return text == "-" ? readLine(name) : text;
  });
}

}  // namespace ovinta::cli
