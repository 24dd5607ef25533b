#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "platform/Date.h"

namespace ovinta::sandbox {

/// A request that has its answer, in short.
struct AnsweredRequest {
  std::string method;
  /// Path and query, as received.
  std::string target;
  /// 0 for no answer.
  int status = 0;
  /// How long it was under way.
  std::chrono::duration<double, std::milli> duration{};
};

struct Options {
  /// The IPv4 address to serve on, or "localhost". One that is not of this machine alone takes an
  /// app token, which merchants and testers have to know then as well.
  std::string host = "127.0.0.1";
  /// The TCP port to serve on; 0 for any that is free.
  int port = 0;
  /// Tokens and redemption codes follow from it.
  std::uint64_t seed = 1;
  /// When given, a file with a snapshot, which the service starts with and is reset to.
  std::optional<std::string> seedFile = {};
  /// The service's clock, called from any thread, never under a lock, which gives dates from
  /// the year 1600 to 9999; empty for the system's.
  std::function<platform::Date()> now = {};
  /// Waits out the delay of a fault; called from any thread, never under a lock. Empty to wait for
  /// the time to pass; the request comes to nothing when the client goes or the service stops
  /// before.
  std::function<void(std::chrono::milliseconds)> pause = {};
  /// Told of each request of apps, merchants and testers, on any thread, just before its answer is
  /// sent; empty for nobody.
  std::function<void(const AnsweredRequest&)> onRequest = {};
  /// How long a client may take for the head of a request; for the whole of it six times as long.
  /// For no longer a connection is kept for its client's next request.
  std::chrono::milliseconds patience{10'000};
  /// How many bytes of requests that are not whole, and of answers that are not taken, there may
  /// be.
  std::size_t memory = std::size_t{256} << 20;
  /// When given, requests of apps must carry exactly this app token.
  std::optional<std::string> appToken = {};
  /// When given, apps with an older version are told to upgrade.
  std::optional<std::string> minimumAppVersion = {};
};

/// The REST service on one's own machine: serves HTTP, keeps everything in memory.
/// The object itself is for one thread at a time; the service answers on threads of its own.
class Sandbox {
 public:
  explicit Sandbox(Options options = {});
  /// Stops the service.
  ~Sandbox();

  Sandbox(const Sandbox&) = delete;
  Sandbox& operator=(const Sandbox&) = delete;

  /// Binds the port and serves from now on; call it once. Answers what went wrong, as a sentence,
  /// or absent when the service is ready.
  [[nodiscard]] std::optional<std::string> start();

  /// Answers the requests that have come, ends open streams and what a fault holds up, and returns
  /// when the last thread has ended. No effect when the service does not run.
  void stop();

  /// Writes all that the service knows to a file that can be a seed file; before, during and after
  /// service. Answers what went wrong, as a sentence, or absent when nothing did.
  [[nodiscard]] std::optional<std::string> saveSnapshot(const std::string& path);

  /// The port in use; 0 before `start`.
  int port() const;

  /// The URL that apps take as base, without a final slash.
  std::string baseURL() const;

 private:
  class Server;
  const std::string host_;
  const std::optional<std::string> seedFile_;
  std::unique_ptr<Server> server_;
};

}  // namespace ovinta::sandbox
