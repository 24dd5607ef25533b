#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "platform/URLSession.h"

namespace ovinta::test {

/// What a client sent, as it came over the wire.
struct ReceivedRequest {
  std::string method;
  std::string target;
  std::vector<platform::HeaderField> headers;
  std::string body;
};

/// One client's connection, as the server's script sees it. It is shut down when the script
/// returns.
class ServerConnection {
 public:
  explicit ServerConnection(int socket) : socket_(socket) {}
  ~ServerConnection();
  ServerConnection(const ServerConnection&) = delete;
  ServerConnection& operator=(const ServerConnection&) = delete;

  /// Waits for the next request; absent when the client or the server's end comes first.
  std::optional<ReceivedRequest> readRequest();

  /// Waits for that many bytes of whatever comes, and drops them; false when the end comes first.
  bool readBytes(std::size_t count);

  /// False when the client went before it had everything.
  bool send(std::string_view bytes);

  /// Waits until the client (or the server's end) closes the connection.
  void waitForClose();

  /// Ends all reading and sending. May be called from any thread.
  void shutDown();

 private:
  bool readMore();

  const int socket_;
  std::string buffer_;
};

/// A TCP server on a free port of the loopback interface that plays a script to every client, each
/// on a thread of its own.
class LocalServer {
 public:
  using Script = std::function<void(ServerConnection&)>;
  using Answer = std::function<std::string(const ReceivedRequest&)>;

  /// `receiveBuffer`, in bytes, limits what the system takes of a client that is not read; 0: the
  /// system's own measure.
  explicit LocalServer(Script script, int receiveBuffer = 0);

  /// Ends all connections and waits for their scripts.
  ~LocalServer();

  /// A script that answers every request of a connection with the bytes that the function gives; an
  /// empty answer is none, and waits for the client to go.
  static Script answering(Answer answer);

  /// "http://127.0.0.1:<port>" and the path.
  std::string url(std::string_view path = "/") const;
  std::uint16_t port() const { return port_; }

  /// How many clients have connected so far.
  std::size_t connectionCount() const;

 private:
  struct Client;

  void acceptClients();

  const Script script_;
  int listener_;
  std::uint16_t port_ = 0;
  mutable std::mutex mutex_;
  bool closing_ = false;
  std::vector<std::unique_ptr<Client>> clients_;
  std::thread thread_;
};

/// The bytes of an answer with that status line's rest ("200 OK"), further header lines (each ended
/// by "\r\n") and a body with its length.
std::string httpAnswer(std::string_view status, std::string_view body = {},
                       std::string_view headerLines = {});

}  // namespace ovinta::test
