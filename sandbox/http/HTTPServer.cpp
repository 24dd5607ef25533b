#include "sandbox/http/HTTPServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdint>
#include <exception>
#include <limits>
#include <utility>

#include "sandbox/http/Connection.h"
#include "sandbox/http/Delivery.h"
#include "sandbox/http/WaitingPlaces.h"

namespace ovinta::sandbox {
namespace {

/// How many threads answer requests: some are left when all places to wait are taken.
constexpr std::size_t kThreads = WaitingPlaces::kMost + 16;

/// Listens on that port of the address; answers the port, absent when it is not to be had.
std::optional<int> listenOn(int socket, const std::string& host, int port) {
  const int on = 1;
  // Two services must not share a port unnoticed, but one may follow another at once.
  ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  const char* const digits = host == "localhost" ? "127.0.0.1" : host.c_str();
  if (::inet_pton(AF_INET, digits, &address.sin_addr) != 1) return std::nullopt;
  auto* const name = reinterpret_cast<sockaddr*>(&address);
  socklen_t size = sizeof address;
  if (::bind(socket, name, size) != 0 || ::listen(socket, SOMAXCONN) != 0 ||
      ::getsockname(socket, name, &size) != 0) {
    return std::nullopt;
  }
  return ntohs(address.sin_port);
}

}  // namespace

HTTPServer::~HTTPServer() { stopAll({}); }

std::optional<int> HTTPServer::start(const std::string& host, int port, Reception::Limits limits,
                                     Reception::RefusalHandler onRefused,
                                     std::function<bool()> keeps) {
  const int listener = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
  const auto bound = listenOn(listener, host, port);
  if (!bound) {
    ::close(listener);
    return std::nullopt;
  }
  patience_ = limits.patience;
  // What the library tells clients that may go on.
  set_keep_alive_timeout(std::chrono::floor<std::chrono::seconds>(patience_).count());
  set_keep_alive_max_count(std::numeric_limits<std::int32_t>::max());
  onRefused_ = std::move(onRefused);
  // The library takes a server for one that runs by this socket.
  svr_sock_ = listener;
  threads_ = std::make_unique<httplib::ThreadPool>(kThreads);
  const auto admit = [this](int socket, std::unique_ptr<IncomingRequest> request) {
    // The library's tasks can be copied, which a request cannot.
    const auto shared = std::make_shared<std::unique_ptr<IncomingRequest>>(std::move(request));
    threads_->enqueue([this, socket, shared] { answer(socket, std::move(*shared)); });
  };
  reception_ = std::make_unique<Reception>(
      listener, limits,
      Reception::Handlers{.admit = admit, .refused = onRefused_, .keeps = std::move(keeps)});
  return bound;
}

void HTTPServer::open() { reception_->open(); }

void HTTPServer::stopAll(std::chrono::milliseconds farewell) {
  if (!reception_) return;
  reception_->shut();
  stop_.raise();
  svr_sock_ = INVALID_SOCKET;
  threads_->shutdown();
  reception_->finish(farewell);
  reception_.reset();
}

void HTTPServer::answer(int socket, std::unique_ptr<IncomingRequest> request) {
  Connection connection(socket, std::move(request), patience_, stop_);
  bool goesOn = false;
  try {
    bool isClosed = false;
    const bool isAnswered =
        process_request(connection, !connection.goesOn(), isClosed,
                        [&](httplib::Request& routed) { connection.attachTo(routed); });
    goesOn = isAnswered && !isClosed && connection.isAttached() && connection.goesOn();
    if (!connection.isAttached()) {
      // What the library would say of it does not tell that the connection ends.
      connection.unsent() = wireText(notHTTP(), connection.head().method != "HEAD");
      // Before its client is told, so that whoever looks for it then finds it.
      onRefused_(connection.head(), notHTTP());
    }
  } catch (const std::exception&) {
    // A handler that fails, for want of memory say, leaves its own client without an answer, and
    // no other.
    connection.close();
  }
  const int left = connection.release();
  reception_->dismiss(left, std::move(connection.unsent()), goesOn);
}

}  // namespace ovinta::sandbox
