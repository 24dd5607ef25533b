#pragma once

#include <httplib.h>

#include <functional>
#include <future>
#include <optional>
#include <string>
#include <thread>

#include "sandbox/Routes.h"
#include "sandbox/Sandbox.h"
#include "sandbox/Service.h"

namespace ovinta::sandbox {

/// The routes over HTTP.
class Sandbox::Server {
 public:
  explicit Server(const Options& options);

  std::optional<std::string> start();
  void stop();
  int port() const { return port_; }
  Service& service() { return service_; }

 private:
  using Reply = httplib::Response;
  using Handler =
      std::function<void(const httplib::Request& request, const std::string& body, Reply& reply)>;

  void addRoute(const Route& route);
  void addFallbacks();
  /// Registers a handler that gets the body, empty when the request has none.
  void add(std::string_view method, const std::string& pattern, const Handler& handler);
  Answer answer(const Route& route, const httplib::Request& request, const std::string& body);
  /// The answer to a request that the route must not see; absent for all others.
  std::optional<Answer> rejection(Access access, const httplib::Request& request,
                                  const std::string& token) const;
  /// Logs what apps asked for, and replies.
  void finish(const httplib::Request& request, const std::string& body, Answer answer,
              Reply& reply);

  const std::optional<std::string> appToken_;
  const int wantedPort_;
  int port_ = 0;
  Service service_;
  httplib::Server http_;
  std::promise<void> ready_;
  std::thread thread_;
};

}  // namespace ovinta::sandbox
