#pragma once

#include <httplib.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "sandbox/http/IncomingRequest.h"
#include "sandbox/http/Reception.h"
#include "sandbox/http/WakeSignal.h"

namespace ovinta::sandbox {

/// The HTTP library's routes and answers, for requests that were received before: the library would
/// have each client that is slow hold one of its threads. A connection that has had its answer goes
/// back to the reception, which ends those that wait for another request when it is shut.
/// `Connection::of` tells handlers theirs.
class HTTPServer : public httplib::Server {
 public:
  HTTPServer() = default;
  ~HTTPServer() override;
  HTTPServer(const HTTPServer&) = delete;
  HTTPServer& operator=(const HTTPServer&) = delete;

  /// Takes that port of an IPv4 address or "localhost", 0 for any; call it once. Clients wait until
  /// `open`. `onRefused` is told, on any thread, of requests that no handler sees, and of what they
  /// are answered; it must not wait, and neither must `keeps`, which says whether connections are
  /// kept at present for another request. Answers the port, or absent when it is not to be had.
  [[nodiscard]] std::optional<int> start(const std::string& host, int port,
                                         Reception::Limits limits,
                                         Reception::RefusalHandler onRefused,
                                         std::function<bool()> keeps);

  /// Serves from now on until it is stopped; call it once, after `start`, when all that the
  /// handlers use is there.
  void open();

  /// Ends the connections that are kept though `keeps` says that they are not; for handlers.
  void dropKept() { reception_->dropKept(); }

  /// Ends all waiting, gives clients `farewell` to take the answers that are left, and returns when
  /// the last thread has ended. No effect unless it was opened.
  void stopAll(std::chrono::milliseconds farewell);

 private:
  void answer(int socket, std::unique_ptr<IncomingRequest> request);

  WakeSignal stop_;
  std::chrono::milliseconds patience_{};
  Reception::RefusalHandler onRefused_;
  std::unique_ptr<httplib::ThreadPool> threads_;
  std::unique_ptr<Reception> reception_;
};

}  // namespace ovinta::sandbox
