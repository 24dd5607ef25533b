#include "cli/client/Secret.h"

#include <termios.h>
#include <unistd.h>

#include <iostream>

namespace ovinta::cli {
namespace {

/// Keeps a terminal from showing what is typed, as long as it lives.
class HiddenInput {
 public:
  HiddenInput() : isTerminal_(::tcgetattr(STDIN_FILENO, &before_) == 0) {
    if (!isTerminal_) return;
    termios hidden = before_;
    hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
    ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden);
  }
  ~HiddenInput() {
    if (isTerminal_) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &before_);
  }
  HiddenInput(const HiddenInput&) = delete;
  HiddenInput& operator=(const HiddenInput&) = delete;

  bool isTerminal() const { return isTerminal_; }

 private:
  termios before_{};
  bool isTerminal_;
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

CLI::Option* addSecretOption(CLI::App& command, const std::string& name, std::string& secret,
                             const std::string& description, const std::string& variable) {
  return command.add_option(name, secret, description + "; \"-\": read from standard input")
      ->envname(variable)
      ->transform([name](const std::string& text) { return text == "-" ? readLine(name) : text; });
}

}  // namespace ovinta::cli
