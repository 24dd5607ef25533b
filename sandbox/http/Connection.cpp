#include "sandbox/http/Connection.h"

#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <span>
#include <utility>

namespace ovinta::sandbox {
namespace {

/// Carries a connection in that member of a request which the HTTP library's clients use, and its
/// servers leave alone.
struct Attachment {
  Connection* connection;

  bool operator()(const httplib::Response&) const { return true; }
};

/// Waits until one of the descriptors is ready or the time is over, without a limit for ever.
/// Answers how many are ready: 0 when the time is over.
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

}  // namespace

Connection::Connection(int socket, std::unique_ptr<IncomingRequest> request,
                       std::chrono::milliseconds patience, const WakeSignal& stop)
    : socket_(socket),
      request_(std::move(request)),
      patience_(patience),
      stop_(stop),
      unread_(request_->text()),
      goesOn_(request_->allowsNext()) {}

Connection::~Connection() { close(); }

void Connection::attachTo(httplib::Request& request) {
  request.response_handler = Attachment{this};
  attached_ = &request;
}

void Connection::endWithAnswer() {
  goesOn_ = false;
  // From this field of the request the HTTP library takes what it is to answer.
  attached_->headers.erase("Connection");
  attached_->set_header("Connection", "close");
}

Connection* Connection::of(const httplib::Request& request) {
  const auto* attachment = request.response_handler.target<Attachment>();
  return attachment ? attachment->connection : nullptr;
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
  ::close(release());
}

void Connection::reset() {
  if (socket_ < 0) return;
  const linger atOnce{.l_onoff = 1, .l_linger = 0};
  ::setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  ::close(release());
}

int Connection::release() { return std::exchange(socket_, -1); }

bool Connection::awaitClient() const {
  std::array<pollfd, 2> watched = {{{.fd = socket_, .events = POLLOUT | POLLRDHUP, .revents = 0},
                                    {.fd = stop_.descriptor(), .events = POLLIN, .revents = 0}}};
  return socket_ >= 0 && await(watched, patience_) > 0 && watched[0].revents == POLLOUT;
}

bool Connection::is_writable() const {
  if (!awaitClient()) return false;
  while (!unsent_.empty()) {
    const auto count = sendSome(socket_, unsent_);
    if (!count) return false;
    unsent_.erase(0, *count);
    if (!awaitClient()) return false;
  }
  return true;
}

ssize_t Connection::read(char* bytes, std::size_t size) {
  const std::size_t count = std::min(size, unread_.size());
  std::memcpy(bytes, unread_.data(), count);
  unread_.remove_prefix(count);
  return static_cast<ssize_t>(count);
}

ssize_t Connection::write(const char* bytes, std::size_t size) {
  const bool isDue = isAttached() && unsent_.empty();
  const auto count = isDue ? sendSome(socket_, {bytes, size}) : 0;
  if (!count) return -1;
  unsent_.append(bytes + *count, size - *count);
  return static_cast<ssize_t>(size);
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
  readAddress(socket_, ::getpeername, ip, port);
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
  readAddress(socket_, ::getsockname, ip, port);
}

std::optional<std::size_t> sendSome(int socket, std::string_view text) {
  std::size_t sent = 0;
  while (sent < text.size()) {
    const auto count =
        ::send(socket, text.data() + sent, text.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
    if (count >= 0) {
      sent += static_cast<std::size_t>(count);
    } else if (errno == EAGAIN) {
      break;
    } else if (errno != EINTR) {
      return std::nullopt;
    }
  }
  return sent;
}

}  // namespace ovinta::sandbox
