#pragma once

#include <httplib.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>

#include "sandbox/Sandbox.h"
#include "sandbox/http/HTTPServer.h"
#include "sandbox/http/Reception.h"
#include "sandbox/routes/Routes.h"
#include "sandbox/routes/Service.h"

namespace ovinta::sandbox {

/// The routes over HTTP.
class Sandbox::Server {
 public:
  explicit Server(const Options& options);

  [[nodiscard]] std::optional<std::string> start();
  void stop();
  int port() const { return port_; }
  Service& service() { return service_; }

 private:
  using Reply = httplib::Response;
  using Handler =
      std::function<void(const httplib::Request& request, const std::string& body, Reply& reply)>;

  void addRoute(const Route& route);
  void addFallbacks();
  /// Logs a request that no handler sees, with what it is answered.
  void logRefused(const RequestHead& head, const Answer& answer);
  /// Registers a handler that gets the body, empty when the request has none. A request whose body
  /// cannot be had is answered without it.
  void add(std::string_view method, const std::string& pattern, Handler handler);
  /// The route's answer, or what the fault makes of it that is set for the route's endpoint.
  Answer answerWithFault(const Route& route, const httplib::Request& request,
                         const std::string& body);
  /// Waits out the fault's delay; answers whether there is still someone to answer then.
  bool pause(const Fault& fault, const Connection& connection) const;
  Answer answer(const Route& route, const httplib::Request& request, const std::string& body);
  /// The route's answer to a call that has passed the checks; once only for requests of a customer
  /// that carry the same key.
  Answer handle(const Route& route, const Call& call, const httplib::Request& request,
                const std::string& body);
  /// The answer to a request that the route must not see; absent for all others.
  std::optional<Answer> rejection(Access access, const httplib::Request& request,
                                  const std::string& token) const;
  /// Logs what apps asked for, and replies.
  void finish(const httplib::Request& request, const std::string& body, Answer answer,
              Reply& reply);

  /// Tells of a request that has its answer.
  void tell(std::string method, std::string target, int status,
            std::chrono::duration<double, std::milli> duration) const;
  /// Whether the request carries the token that others than apps need where they can be anybody.
  bool isFromTester(const httplib::Request& request) const;

  const std::string host_;
  const std::function<void(const AnsweredRequest&)> onRequest_;
  const std::optional<std::string> appToken_;
  const std::function<void(std::chrono::milliseconds)> pause_;
  const Reception::Limits limits_;
  const int wantedPort_;
  int port_ = 0;
  Service service_;
  HTTPServer http_;
};

}  // namespace ovinta::sandbox
