#include "tests/support/LocalServer.h"

#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>
#include <unistd.h>

#include <sstream>
#include <stdexcept>
#include <utility>

namespace ovinta::test {
namespace {

constexpr std::string_view kHeadEnd = "\r\n\r\n";

ReceivedRequest parseHead(const std::string& head) {
  std::istringstream lines(head);
  ReceivedRequest request;
  std::string line;
  lines >> request.method >> request.target;
  std::getline(lines, line);
  while (std::getline(lines, line)) {
    if (line.ends_with('\r')) line.pop_back();
    const auto colon = line.find(':');
    const auto value = line.compare(colon, 2, ": ") == 0 ? colon + 2 : colon + 1;
    request.headers.push_back({line.substr(0, colon), line.substr(value)});
  }
  return request;
}

std::size_t contentLength(const ReceivedRequest& request) {
  for (const auto& [name, value] : request.headers) {
    if (strcasecmp(name.c_str(), "Content-Length") == 0) return std::stoul(value);
  }
  return 0;
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
  auto request = parseHead(buffer_.substr(0, headEnd));
  const auto bodyStart = headEnd + kHeadEnd.size();
  const auto length = contentLength(request);
  while (buffer_.size() < bodyStart + length) {
    if (!readMore()) return std::nullopt;
  }
  request.body = buffer_.substr(bodyStart, length);
  buffer_.erase(0, bodyStart + length);
  return request;
}

ServerConnection::~ServerConnection() { close(socket_); }

bool ServerConnection::readBytes(std::size_t count) {
  while (buffer_.size() < count) {
    count -= buffer_.size();
    buffer_.clear();
    if (!readMore()) return false;
  }
  buffer_.erase(0, count);
  return true;
}

bool ServerConnection::send(std::string_view bytes) {
  while (!bytes.empty()) {
    const auto count = ::send(socket_, bytes.data(), bytes.size(), MSG_NOSIGNAL);
    if (count <= 0) return false;
    bytes.remove_prefix(static_cast<std::size_t>(count));
  }
  return true;
}

void ServerConnection::waitForClose() {
  while (readMore()) buffer_.clear();
}

void ServerConnection::shutDown() { shutdown(socket_, SHUT_RDWR); }

struct LocalServer::Client {
  explicit Client(int socket) : connection(socket) {}

  ServerConnection connection;
  std::thread thread;
};

LocalServer::LocalServer(Script script, int receiveBuffer)
    : script_(std::move(script)), listener_(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  auto* const plain = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (receiveBuffer > 0) {
    setsockopt(listener_, SOL_SOCKET, SO_RCVBUF, &receiveBuffer, sizeof receiveBuffer);
  }
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
      client->connection.shutDown();
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
