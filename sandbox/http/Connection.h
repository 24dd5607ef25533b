#pragma once

#include <httplib.h>

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "sandbox/http/IncomingRequest.h"
#include "sandbox/http/WakeSignal.h"

namespace ovinta::sandbox {

/// One client's connection while its request is answered. The request was received before, and what
/// the client does not take at once of an answer is left to be sent later, so that no client holds
/// up the thread that answers; only a stream waits for its client. Used by one thread.
class Connection : public httplib::Stream {
 public:
  /// Takes the socket over, which must not block. The client is not waited for longer than
  /// `patience` at a time, nor once the service stops. `request` must be whole.
  Connection(int socket, std::unique_ptr<IncomingRequest> request,
             std::chrono::milliseconds patience, const WakeSignal& stop);
  /// Closes what is still open.
  ~Connection() override;

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// Has the request, which must not outlive the connection, lead to it: the HTTP library hands its
  /// handlers nothing else. Until then everything is kept to be sent later.
  void attachTo(httplib::Request& request);
  /// The connection that was attached to the request; null for none.
  static Connection* of(const httplib::Request& request);

  /// The time since the whole request was there for an answer.
  std::chrono::duration<double, std::milli> age() const {
    return std::chrono::steady_clock::now() - since_;
  }

  const RequestHead& head() const { return request_->head(); }

  /// Whether the client may go on with another request when it has the answer.
  bool goesOn() const { return goesOn_; }
  /// Has the client be told that nothing comes after the answer. To be called by a handler.
  void endWithAnswer();

  /// Returns when the client has hung up, the service stops, `end` is raised, or the time is over;
  /// answers whether there is still someone to answer then.
  bool waitForHangUp(const WakeSignal& end,
                     std::optional<std::chrono::milliseconds> limit = {}) const;

  void close();
  /// Closes with a reset in place of an orderly end.
  void reset();

  /// Gives the socket away; -1 when it is closed already.
  int release();
  /// Whether a request leads here, as each does that a handler gets.
  bool isAttached() const { return attached_ != nullptr; }
  /// What is still to be sent.
  std::string& unsent() { return unsent_; }

  bool is_readable() const override { return !unread_.empty(); }
  /// Whether the client takes more, and has not hung up. Waits until it has taken what is left.
  bool is_writable() const override;
  /// 0 at the end of the request.
  ssize_t read(char* bytes, std::size_t size) override;
  /// Sends what the client takes at once, and keeps the rest; all of it before `attachTo`.
  ssize_t write(const char* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return socket_; }

 private:
  /// Waits until the client takes more; answers whether it does and has not hung up.
  bool awaitClient() const;

  const std::chrono::steady_clock::time_point since_ = std::chrono::steady_clock::now();
  int socket_;
  const std::unique_ptr<IncomingRequest> request_;
  const std::chrono::milliseconds patience_;
  const WakeSignal& stop_;
  std::string_view unread_;
  /// What the client has not taken; mutable because `is_writable` sends it first.
  mutable std::string unsent_;
  /// The request that was attached; null for none.
  httplib::Request* attached_ = nullptr;
  bool goesOn_;
};

/// Sends the beginning of the text, as much as the socket takes without waiting; absent when it
/// takes nothing any more.
std::optional<std::size_t> sendSome(int socket, std::string_view text);

}  // namespace ovinta::sandbox
