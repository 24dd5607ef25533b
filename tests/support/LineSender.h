#pragma once

#include <boost/asio.hpp>
#include <chrono>
#include <string>

namespace ovinta::test {

/// A server that says what the test tells it, to one listener at a time.
template <class Protocol>
class LineSender {
 public:
  explicit LineSender(const typename Protocol::endpoint& endpoint)
      : acceptor_(context_, endpoint) {}

  typename Protocol::endpoint endpoint() const { return acceptor_.local_endpoint(); }

  /// Waits for the next listener; false when none comes within ten seconds.
  bool accept() {
    hangUp();
    acceptor_.async_accept(connection_, [](const auto&) {});
    context_.restart();
    context_.run_for(std::chrono::seconds(10));
    return connection_.is_open();
  }
  void say(const std::string& lines) { write(connection_, boost::asio::buffer(lines)); }
  void hangUp() { connection_.close(); }

 private:
  boost::asio::io_context context_;
  typename Protocol::acceptor acceptor_;
  typename Protocol::socket connection_{context_};
};

}  // namespace ovinta::test
