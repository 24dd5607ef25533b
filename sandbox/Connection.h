#pragma once

#include <httplib.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "sandbox/WakeSignal.h"

namespace ovinta::sandbox {

/// One client's connection, for one request. Gives handlers what the HTTP library hides: the header
/// fields in the order received, and the socket's ends. Used by one thread.
class Connection : public httplib::Stream {
 public:
  using HeaderFields = std::vector<std::pair<std::string, std::string>>;

  /// Takes the socket over. The client is not waited for longer than `patience` at a time, nor once
  /// the service stops.
  Connection(int socket, std::chrono::seconds patience, const WakeSignal& stop);
  /// Closes what is still open.
  ~Connection() override;

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  /// The connection whose request this thread handles.
  static Connection& current();

  /// The request's header fields in the order received, names as received.
  HeaderFields headers() const;

  /// Returns when the client has hung up, the service stops, `end` is raised, or the time is over;
  /// answers whether there is still someone to answer then.
  bool waitForHangUp(const WakeSignal& end,
                     std::optional<std::chrono::milliseconds> limit = {}) const;

  void close();
  /// Closes with a reset in place of an orderly end.
  void reset();

  bool is_readable() const override;
  /// Whether the client takes more, and has not hung up.
  bool is_writable() const override;
  ssize_t read(char* bytes, std::size_t size) override;
  ssize_t write(const char* bytes, std::size_t size) override;
  void get_remote_ip_and_port(std::string& ip, int& port) const override;
  void get_local_ip_and_port(std::string& ip, int& port) const override;
  socket_t socket() const override { return socket_; }

 private:
  /// Waits for `poll` events of the socket; answers those that have come, 0 for none.
  int awaitClient(int events) const;
  bool fill();

  int socket_;
  const std::chrono::seconds patience_;
  const WakeSignal& stop_;
  std::array<char, 4096> buffer_{};
  std::string_view unread_;
  /// The request's first bytes, up to the end of its head at least once that was read.
  std::string head_;
  Connection* const outer_;
};

}  // namespace ovinta::sandbox
