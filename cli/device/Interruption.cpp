#include "cli/device/Interruption.h"

#include <pthread.h>

#include <algorithm>
#include <cerrno>
#include <cmath>

namespace ovinta::cli {

Interruption::Interruption() {
  sigemptyset(&signals_);
  for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGPIPE}) sigaddset(&signals_, number);
  pthread_sigmask(SIG_BLOCK, &signals_, &before_);
}

Interruption::~Interruption() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }

bool Interruption::happened(std::chrono::duration<double> wait) {
  const double seconds = std::max(0.0, wait.count());
  const timespec time{.tv_sec = static_cast<time_t>(seconds),
                      .tv_nsec = static_cast<long>((seconds - std::floor(seconds)) * 1e9)};
  if (received_ == 0) received_ = std::max(0, sigtimedwait(&signals_, nullptr, &time));
  return received_ != 0;
}

void Interruption::check(std::chrono::duration<double> wait) {
  if (happened(wait)) throw Interrupted(received_);
}

}  // namespace ovinta::cli
