#include "tests/support/LocalServer.h"

#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <charconv>
#include <stdexcept>
#include <utility>

namespace ovinta::test {
namespace {

constexpr std::string_view kHeadEnd = "\r\n\r\n";

ReceivedRequest parseHead(std::string_view head) {
  const auto nextLine = [&head] {
    const auto end = head.find("\r\n");
    const auto line = head.substr(0, end);
    head.remove_prefix(end == std::string_view::npos ? head.size() : end + 2);
    return line;
  };
  ReceivedRequest request;
  const std::string_view start = nextLine();
  const auto first = start.find(' ');
  const auto second = start.find(' ', first + 1);
  request.method = start.substr(0, first);
  request.target = start.substr(first + 1, second - first - 1);
  while (!head.empty()) {
    const auto line = nextLine();
    const auto colon = line.find(':');
    auto value = line.substr(colon + 1);
    if (value.starts_with(' ')) value.remove_prefix(1);
    request.headers.push_back({std::string(line.substr(0, colon)), std::string(value)});
  }
  return request;
}

std::size_t contentLength(const ReceivedRequest& request) {
  std::size_t length = 0;
  for (const auto& [name, value] : request.headers) {
    if (strcasecmp(name.c_str(), "Content-Length") == 0) {
      std::from_chars(value.data(), value.data() + value.size(), length);
    }
  }
  return length;
}

}  // namespace

bool ServerConnection::readMore() {
  char bytes[16 * 1024];
  const auto count = recv(socket_, bytes, sizeof bytes, 0);
  if (count <= 0) return false;
  buffer_.append(bytes, static_cast<std::size_t>(count));
  return true;
}

std::optional<ReceivedRequest> ServerConnection::readRequest() {
  std::size_t headEnd;
  while ((headEnd = buffer_.find(kHeadEnd)) == std::string::npos) {
    if (!readMore()) return std::nullopt;
  }
  auto request = parseHead(std::string_view(buffer_).substr(0, headEnd));
  const auto bodyStart = headEnd + kHeadEnd.size();
  const auto length = contentLength(request);
  while (buffer_.size() < bodyStart + length) {
    if (!readMore()) return std::nullopt;
  }
  request.body = buffer_.substr(bodyStart, length);
  buffer_.erase(0, bodyStart + length);
  return request;
}

void ServerConnection::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
}

void ServerConnection::waitForClose() {
  while (readMore()) buffer_.clear();
}

void ServerConnection::close() {
  const std::lock_guard lock(mutex_);
  if (socket_ >= 0) ::close(std::exchange(socket_, -1));
}

void ServerConnection::reset() {
  const linger atOnce{.l_onoff = 1, .l_linger = 0};
  setsockopt(socket_, SOL_SOCKET, SO_LINGER, &atOnce, sizeof atOnce);
  close();
}

void ServerConnection::shutDown() {
  const std::lock_guard lock(mutex_);
  if (socket_ >= 0) shutdown(socket_, SHUT_RDWR);
}

struct LocalServer::Client {
  explicit Client(int socket) : connection(socket) {}

  ServerConnection connection;
  std::thread thread;
};

LocalServer::LocalServer(Script script)
    : script_(std::move(script)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* const plain = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (bind(listener_, plain, size) != 0 || listen(listener_, SOMAXCONN) != 0 ||
      getsockname(listener_, plain, &size) != 0) {
    throw std::runtime_error("no free port");
  }
  port_ = ntohs(address.sin_port);
  thread_ = std::thread([this] { acceptClients(); });
}

LocalServer::~LocalServer() {
  {
    const std::lock_guard lock(mutex_);
    closing_ = true;
  }
  shutdown(listener_, SHUT_RDWR);
  thread_.join();
  close(listener_);
  for (const auto& client : clients_) {
    client->connection.shutDown();
    client->thread.join();
  }
}

void LocalServer::acceptClients() {
  for (;;) {
    const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
    const std::lock_guard lock(mutex_);
    if (socket < 0) {
      if (closing_) return;
      continue;
    }
    auto* const client = clients_.emplace_back(std::make_unique<Client>(socket)).get();
    client->thread = std::thread([this, client] {
      script_(client->connection);
      client->connection.close();
    });
  }
}

LocalServer::Script LocalServer::answering(Answer answer) {
  return [answer = std::move(answer)](ServerConnection& connection) {
    while (const auto request = connection.readRequest()) {
      const auto bytes = answer(*request);
      if (bytes.empty()) return connection.waitForClose();
      connection.send(bytes);
    }
  };
}

std::string LocalServer::url(std::string_view path) const {
  return "http://127.0.0.1:" + std::to_string(port_) + std::string(path);
}

std::size_t LocalServer::connectionCount() const {
  const std::lock_guard lock(mutex_);
  return clients_.size();
}

std::string httpAnswer(std::string_view status, std::string_view body,
                       std::string_view headerLines) {
  return "HTTP/1.1 " + std::string(status) + "\r\n" + std::string(headerLines) +
         "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + std::string(body);
}

}  // namespace ovinta::test
