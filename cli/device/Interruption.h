#pragma once

#include <signal.h>

#include <chrono>
#include <exception>

namespace ovinta::cli {

/// Thrown where an `Interruption` is checked, so that everything on the way out is put away.
struct Interrupted : std::exception {
  explicit Interrupted(int number) : signalNumber(number) {}
  const char* what() const noexcept override { return "interrupted"; }

  int signalNumber;
};

/// Takes the place of SIGINT, SIGTERM, SIGHUP and, for the thread's own writing and a `Timeline`'s,
/// SIGPIPE as long as it lives: instead of ending the process they are noted. Make it before other
/// threads start. For one thread.
class Interruption {
 public:
  Interruption();
  ~Interruption();
  Interruption(const Interruption&) = delete;
  Interruption& operator=(const Interruption&) = delete;

  /// Whether one of the signals has come, or comes before the time is over.
  bool happened(std::chrono::duration<double> wait = {});
  /// Throws `Interrupted` if one of the signals has come, or comes before the time is over.
  void check(std::chrono::duration<double> wait = {});

 private:
  sigset_t signals_;
  sigset_t before_;
  int received_ = 0;
};

}  // namespace ovinta::cli
