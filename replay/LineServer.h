#pragma once

#include <boost/asio.hpp>
#include <chrono>
#include <optional>
#include <string>
#include <utility>

namespace ovinta::replay {

/// Tells lines to one listener at a time; a new one takes the place of the one before. It never
/// waits for a listener to read. For one thread.
template <class Protocol>
class LineServer {
 public:
  /// Throws `boost::system::system_error`.
  explicit LineServer(const typename Protocol::endpoint& endpoint) : acceptor_(context_, endpoint) {
    accept();
  }

  typename Protocol::endpoint endpoint() const { return acceptor_.local_endpoint(); }

  /// Whether there is a listener, or one comes before the time is over. One that hung up is noticed
  /// when it is told something.
  bool hasListener(std::chrono::milliseconds wait = {}) {
    context_.poll();
    if (!listener_) context_.run_one_for(wait);
    return listener_.has_value();
  }

  /// Lines that nobody listens to are lost; a listener that has not read for long is dropped.
  void say(const std::string& lines) {
    if (!hasListener()) return;
    boost::system::error_code error;
    write(*listener_, boost::asio::buffer(lines), error);
    if (error) hangUp();
  }

  void hangUp() { listener_.reset(); }

 private:
  void accept() {
    acceptor_.async_accept([this](const boost::system::error_code& error, auto socket) {
      if (!error) {
        socket.non_blocking(true);
        listener_ = std::move(socket);
      }
      accept();
    });
  }

  boost::asio::io_context context_{1};
  typename Protocol::acceptor acceptor_;
  std::optional<typename Protocol::socket> listener_;
};

}  // namespace ovinta::replay
