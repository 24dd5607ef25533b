#pragma once

#include <httplib.h>

#include <chrono>

#include "sandbox/WakeSignal.h"

namespace ovinta::sandbox {

/// The HTTP library's server on connections of our own, each for one request: an idle one would
/// hold a thread, and hold up stopping.
class HTTPServer : public httplib::Server {
 public:
  /// Ends all waiting and serving; to be called once the server listens. May be called from any
  /// thread.
  void stopAll();

 private:
  bool process_and_close_socket(socket_t socket) override;

  /// How long a client may leave a request, or the end of an answer, waiting.
  static constexpr std::chrono::seconds kPatience{10};

  WakeSignal stop_;
};

}  // namespace ovinta::sandbox
