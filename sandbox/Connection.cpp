#include "sandbox/Connection.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace ovinta::sandbox {
namespace {

constexpr std::string_view kLineEnd = "\r\n";
constexpr std::string_view kHeadEnd = "\r\n\r\n";

thread_local Connection* currentConnection = nullptr;

void setTimeout(int socket, int option, std::chrono::seconds time) {
  const timeval value{.tv_sec = time.count(), .tv_usec = 0};
  ::setsockopt(socket, SOL_SOCKET, option, &value, sizeof value);
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

Connection::Connection(int socket, std::chrono::seconds patience, const StopSignal& stop)
    : socket_(socket), patience_(patience), stop_(stop), outer_(currentConnection) {
  setTimeout(socket_, SO_RCVTIMEO, patience_);
  setTimeout(socket_, SO_SNDTIMEO, patience_);
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

bool Connection::waitForHangUp(std::optional<std::chrono::milliseconds> limit) const {
  std::array<pollfd, 2> watched = {{{.fd = socket_, .events = POLLRDHUP, .revents = 0},
                                    {.fd = stop_.descriptor(), .events = POLLIN, .revents = 0}}};
  const int timeout = limit ? static_cast<int>(limit->count()) : -1;
  int count = 0;
  do {
    count = ::poll(watched.data(), watched.size(), timeout);
  } while (count < 0 && errno == EINTR);
  return count == 0;
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

bool Connection::is_readable() const {
  pollfd watched{.fd = socket_, .events = POLLIN, .revents = 0};
  const auto timeout = std::chrono::milliseconds(patience_).count();
  return !unread_.empty() || ::poll(&watched, 1, static_cast<int>(timeout)) > 0;
}

bool Connection::is_writable() const {
  pollfd watched{.fd = socket_, .events = POLLOUT | POLLRDHUP, .revents = 0};
  const auto timeout = std::chrono::milliseconds(patience_).count();
  return socket_ >= 0 && ::poll(&watched, 1, static_cast<int>(timeout)) > 0 &&
         watched.revents == POLLOUT;
}

bool Connection::fill() {
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
  if (socket_ < 0) return -1;
  return ::send(socket_, bytes, size, MSG_NOSIGNAL);
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
  readAddress(socket_, ::getpeername, ip, port);
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
  readAddress(socket_, ::getsockname, ip, port);
}

}  // namespace ovinta::sandbox
