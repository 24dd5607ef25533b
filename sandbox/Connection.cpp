#include "sandbox/Connection.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <span>

namespace ovinta::sandbox {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHeadEnd = "\r\n\r\n";

thread_local Connection* currentConnection = nullptr;

/// The number of those that are ready, which is 0 when the time is over; without a limit there is
/// no such end.
int await(std::span<pollfd> watched, std::optional<std::chrono::milliseconds> limit) {
  const int timeout = limit ? static_cast<int>(limit->count()) : -1;
  int count = 0;
  do {
    count = ::poll(watched.data(), watched.size(), timeout);
  } while (count < 0 && errno == EINTR);
  return count;
}

using NameOf = int (*)(int, sockaddr*, socklen_t*);

void readAddress(int socket, NameOf nameOf, std::string& ip, int& port) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  ip = "127.0.0.1";
  if (nameOf(socket, reinterpret_cast<sockaddr*>(&address), &size) == 0) {
    port = ntohs(address.sin_port);
  }
}

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view kBlanks = " \t";
  const auto first = text.find_first_not_of(kBlanks);
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

}  // namespace

Connection::Connection(int socket, std::chrono::seconds patience, const WakeSignal& stop)
    : socket_(socket), patience_(patience), stop_(stop), outer_(currentConnection) {
  currentConnection = this;
}

Connection::~Connection() {
  currentConnection = outer_;
  close();
}

Connection& Connection::current() { return *currentConnection; }

Connection::HeaderFields Connection::headers() const {
  HeaderFields fields;
  std::string_view rest = std::string_view(head_).substr(0, head_.find(kHeadEnd));
  // The first line is the request's own.
  for (auto end = rest.find(kLineEnd); end != std::string_view::npos; end = rest.find(kLineEnd)) {
    rest.remove_prefix(end + kLineEnd.size());
    const std::string_view line = rest.substr(0, rest.find(kLineEnd));
    const auto colon = line.find(':');
    if (colon == std::string_view::npos) continue;
    fields.emplace_back(line.substr(0, colon), trimmed(line.substr(colon + 1)));
  }
  return fields;
}

bool Connection::waitForHangUp(const WakeSignal& end,
                               std::optional<std::chrono::milliseconds> limit) const {
  std::array<pollfd, 3> watched = {{{.fd = socket_, .events = POLLRDHUP, .revents = 0},
                                    {.fd = stop_.descriptor(), .events = POLLIN, .revents = 0},
                                    {.fd = end.descriptor(), .events = POLLIN, .revents = 0}}};
  await(watched, limit);
  return watched[0].revents == 0 && watched[1].revents == 0;
}

void Connection::close() {
  if (socket_ < 0) return;
  ::shutdown(socket_, SHUT_RDWR);
  ::close(std::exchange(socket_, -1));
}

void Connection::reset() {
  if (socket_ < 0) return;
  const linger atOnce{.l_onoff = 1, .l_linger = 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  ::close(std::exchange(socket_, -1));
}

int Connection::awaitClient(int events) const {
  std::array<pollfd, 2> watched = {
      {{.fd = socket_, .events = static_cast<short>(events), .revents = 0},
       {.fd = stop_.descriptor(), .events = POLLIN, .revents = 0}}};
  return socket_ >= 0 && await(watched, patience_) > 0 ? watched[0].revents : 0;
}

bool Connection::is_readable() const { return !unread_.empty() || awaitClient(POLLIN) != 0; }

bool Connection::is_writable() const { return awaitClient(POLLOUT | POLLRDHUP) == POLLOUT; }

bool Connection::fill() {
  if (awaitClient(POLLIN) == 0) return false;
  const auto count = ::recv(socket_, buffer_.data(), buffer_.size(), 0);
  if (count <= 0) return false;
  unread_ = {buffer_.data(), static_cast<std::size_t>(count)};
  if (head_.find(kHeadEnd) == std::string::npos) head_ += unread_;
  return true;
}

ssize_t Connection::read(char* bytes, std::size_t size) {
  if (unread_.empty() && !fill()) return -1;
  const std::size_t count = std::min(size, unread_.size());
  std::memcpy(bytes, unread_.data(), count);
  unread_.remove_prefix(count);
  return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* bytes, std::size_t size) {
  std::size_t sent = 0;
  while (sent < size) {
    if (awaitClient(POLLOUT) == 0) return -1;
    const auto count = ::send(socket_, bytes + sent, size - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count < 0 && errno != EAGAIN && errno != EINTR) return -1;
    sent += static_cast<std::size_t>(std::max<ssize_t>(count, 0));
  }
  return static_cast<ssize_t>(size);
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
  readAddress(socket_, ::getpeername, ip, port);
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
  readAddress(socket_, ::getsockname, ip, port);
}

}  // namespace ovinta::sandbox
