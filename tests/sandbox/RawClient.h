#pragma once

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace ovinta::sandbox {

/// A connection to 127.0.0.1 over which anything can be sent, in pieces of any size. An answer is
/// waited for a minute and a half at most.
class RawClient {
 public:
  /// With a receive buffer of that size; 0 for the system's own.
  explicit RawClient(int port, int receiveBuffer = 0)
      : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    if (receiveBuffer > 0) {
      ::setsockopt(socket_, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
    }
    const timeval limit{.tv_sec = 90, .tv_usec = 0};
    ::setsockopt(socket_, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    // Where nobody listens there is no answer either.
    (void)::connect(socket_, reinterpret_cast<const sockaddr*>(&address), sizeof address);
  }
  ~RawClient() {
    if (socket_ >= 0) ::close(socket_);
  }
  RawClient(RawClient&& other) noexcept : socket_(std::exchange(other.socket_, -1)) {}
  RawClient& operator=(RawClient&&) = delete;

  void send(std::string_view text) const {
    ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL);
  }

  /// Whether something of an answer, or its end, comes within that time.
  bool isAnswered(std::chrono::milliseconds limit) const {
    pollfd watched{.fd = socket_, .events = POLLIN, .revents = 0};
    return ::poll(&watched, 1, static_cast<int>(limit.count())) > 0;
  }

  /// All that comes until the end, with a mark when the connection was reset.
  std::string answer() const {
    std::string bytes;
    std::array<char, 4096> buffer{};
    ssize_t count = 0;
    while ((count = ::recv(socket_, buffer.data(), buffer.size(), 0)) > 0) {
      bytes.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return count < 0 && errno == ECONNRESET ? bytes + "(reset)" : bytes;
  }

  std::string ask(std::string_view request) const {
    send(request);
    return answer();
  }

 private:
  int socket_;
};

}  // namespace ovinta::sandbox
