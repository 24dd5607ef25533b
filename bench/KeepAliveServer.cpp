#include "bench/KeepAliveServer.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/epoll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "bench/Processor.h"

namespace ovinta::bench {
namespace {

std::string answerWith(const std::string& body) {
  return "HTTP/1.1 200 OK\r\nContent-Type: application/json; charset=utf-8\r\nDate: Mon, 01 Jan "
         "2024 00:00:00 GMT\r\nContent-Length: " +
         std::to_string(body.size()) + "\r\n\r\n" + body;
}

/// How long the first request of the text is, its body included; 0 until it is whole.
std::size_t wholeRequest(std::string_view text) {
  constexpr std::string_view kEnd = "\r\n\r\n";
  constexpr std::string_view kLength = "\r\nContent-Length: ";
  const auto end = text.find(kEnd);
  if (end == std::string_view::npos) return 0;
  std::size_t body = 0;
  const auto length = text.substr(0, end).find(kLength);
  if (length != std::string_view::npos) {
    std::from_chars(text.data() + length + kLength.size(), text.data() + end, body);
  }
  const std::size_t size = end + kEnd.size() + body;
  return size <= text.size() ? size : 0;
}

void watch(int events, int socket) {
  epoll_event event{};
  event.events = EPOLLIN;
  event.data.fd = socket;
  ::epoll_ctl(events, EPOLL_CTL_ADD, socket, &event);
}

}  // namespace

KeepAliveServer::KeepAliveServer(std::string body)
    : answer_(answerWith(body)),
      listener_(::socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)),
      events_(::epoll_create1(EPOLL_CLOEXEC)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* const name = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (::bind(listener_, name, size) != 0 || ::listen(listener_, SOMAXCONN) != 0 ||
      ::getsockname(listener_, name, &size) != 0) {
    std::perror("KeepAliveServer");
    std::exit(EXIT_FAILURE);
  }
  port_ = ntohs(address.sin_port);
  watch(events_, listener_);
  thread_ = std::thread([this] { run(); });
}

KeepAliveServer::~KeepAliveServer() {
  isEnding_ = true;
  ::shutdown(listener_, SHUT_RDWR);
  thread_.join();
  for (const auto& [socket, received] : received_) ::close(socket);
  ::close(listener_);
  ::close(events_);
}

std::string KeepAliveServer::url() const {
  return "http://127.0.0.1:" + std::to_string(port_) + "/";
}

void KeepAliveServer::run() {
  const OnProcessor alone(1);
  std::array<epoll_event, 64> ready;
  while (!isEnding_) {
    const int count = ::epoll_wait(events_, ready.data(), static_cast<int>(ready.size()), -1);
    for (int place = 0; place < count; ++place) {
      const int socket = ready.at(static_cast<std::size_t>(place)).data.fd;
      if (socket == listener_) {
        accept();
      } else {
        serve(socket);
      }
    }
  }
}

void KeepAliveServer::accept() {
  const int socket = ::accept4(listener_, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  if (socket < 0) return;
  const int on = 1;
  ::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
  received_[socket];
  ++connectionCount_;
  watch(events_, socket);
}

void KeepAliveServer::serve(int socket) {
  std::array<char, 4096> buffer;
  const auto count = ::recv(socket, buffer.data(), buffer.size(), 0);
  if (count <= 0) {
    ::close(socket);
    received_.erase(socket);
    return;
  }
  std::string& text = received_[socket];
  text.append(buffer.data(), static_cast<std::size_t>(count));
  while (const auto size = wholeRequest(text)) {
    text.erase(0, size);
    (void)!::send(socket, answer_.data(), answer_.size(), MSG_NOSIGNAL);
  }
}

}  // namespace ovinta::bench
