#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <thread>
#include <unordered_map>

namespace ovinta::bench {

/// A server on a free port of the loopback interface that gives every request the same answer,
/// keeps all connections, and takes next to no time. One thread.
class KeepAliveServer {
 public:
  /// The body of each answer.
  explicit KeepAliveServer(std::string body);
  ~KeepAliveServer();
  KeepAliveServer(const KeepAliveServer&) = delete;
  KeepAliveServer& operator=(const KeepAliveServer&) = delete;

  /// "http://127.0.0.1:<port>/".
  std::string url() const;

  /// How many connections have come so far.
  std::size_t connectionCount() const { return connectionCount_; }

 private:
  void run();
  void accept();
  void serve(int socket);

  const std::string answer_;
  int listener_;
  int events_;
  std::uint16_t port_ = 0;
  /// What came of each connection since the last whole request.
  std::unordered_map<int, std::string> received_;
  std::atomic<std::size_t> connectionCount_ = 0;
  std::atomic<bool> isEnding_ = false;
  std::thread thread_;
};

}  // namespace ovinta::bench
