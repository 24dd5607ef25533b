#include "sandbox/Server.h"

#include <chrono>
#include <cmath>
#include <utility>

#include "sandbox/domain/Envelope.h"
#include "sandbox/domain/Validation.h"
#include "sandbox/domain/WireForms.h"
#include "sandbox/http/Connection.h"
#include "sandbox/http/Delivery.h"
#include "sandbox/http/ForeignRequests.h"
#include "sandbox/http/RequestBody.h"

namespace ovinta::sandbox {
namespace {

/// How long those that listen for pushes, and those that take the end of an answer, may take to go
/// at the end.
constexpr std::chrono::seconds kFarewell{1};

/// By this name merchants and testers present the token where they can be anybody.
constexpr const char* kTester = "sandbox";
constexpr const char* kChallenge = "Basic realm=\"user sandbox, password: the app token\"";

/// The answer to a request that the HTTP library refuses with that status.
Answer explained(int status) {
  switch (status) {
    case 400:
      return notHTTP();
    case 404:
      return errorAnswer(status, "path", "is unknown");
    default:
      return errorAnswer(status, "request", "cannot be served");
  }
}

/// The text between the quotes of `Token token="..."`; empty for anything else.
std::string customerToken(const std::string& authorization) {
  constexpr std::string_view kStart = "Token token=\"";
  std::string_view token = authorization;
  if (!token.starts_with(kStart)) return {};
  token.remove_prefix(kStart.size());
  // The quote at the end is the only one.
  return token.find('"') + 1 == token.size() ? std::string(token.substr(0, token.size() - 1)) : "";
}

}  // namespace

Sandbox::Server::Server(const Options& options)
    : host_(options.host),
      onRequest_(options.onRequest),
      appToken_(options.appToken),
      pause_(options.pause),
      limits_{.patience = options.patience,
              .memory = options.memory,
              .isPublic = !isLoopbackName(options.host)},
      wantedPort_(options.port),
      service_(options.seed, options.now, [this] { http_.dropKept(); }) {
  service_.setMinimumAppVersion(options.minimumAppVersion.value_or(std::string()));
  for (const Route& route : routes()) addRoute(route);
  addFallbacks();
}

std::optional<std::string> Sandbox::Server::start() {
  if (limits_.isPublic && appToken_.value_or("").empty()) {
    return "An address that is not of this machine alone takes an app token";
  }
  const auto port = http_.start(
      host_, wantedPort_, limits_,
      [this](const RequestHead& head, const Answer& answer) { logRefused(head, answer); },
      [this] { return !service_.faults.areInForce(); });
  if (!port) {
    return "Port " + std::to_string(wantedPort_) + " on " + host_ + " is taken or not allowed";
  }
  port_ = *port;
  http_.open();
  return std::nullopt;
}

void Sandbox::Server::stop() {
  // The streams are ended first: once the server stops it breaks off what is still being sent.
  service_.pushes.close(kFarewell);
  service_.feed.close(kFarewell);
  http_.stopAll(kFarewell);
}

void Sandbox::Server::addRoute(const Route& route) {
  add(route.method, std::string(route.pattern),
      [this, &route](const httplib::Request& request, const std::string& body, Reply& reply) {
        finish(request, body, answerWithFault(route, request, body), reply);
      });
}

void Sandbox::Server::addFallbacks() {
  for (const char* method : {"GET", "POST", "PUT", "PATCH", "DELETE"}) {
    add(method, ".*",
        [this](const httplib::Request& request, const std::string& body, Reply& reply) {
          finish(request, body, explained(404), reply);
        });
  }
  // Whatever the service itself answers has a content type.
  const auto explain = [this](const httplib::Request& request, Reply& reply) {
    using enum httplib::Server::HandlerResponse;
    // What the library has refused before it was anybody's, the server answers and logs.
    if (reply.has_header("Content-Type") || !Connection::of(request)) return Unhandled;
    finish(request, {}, explained(reply.status), reply);
    return Handled;
  };
  http_.set_error_handler(httplib::Server::HandlerWithResponse(explain));
  http_.set_exception_handler(
      [](const httplib::Request&, Reply& reply, const std::exception_ptr&) { reply.status = 500; });
}

void Sandbox::Server::logRefused(const RequestHead& head, const Answer& answer) {
  if (head.method.empty()) return;
  tell(head.method, head.target, answer.status, {});
  if (isTesters(head.target)) return;
  service_.requests.add({.method = head.method,
                         .target = head.target,
                         .headers = head.fields,
                         .status = answer.status,
                         .answerBody = answer.body,
                         .time = dateText(service_.state.now())});
}

void Sandbox::Server::add(std::string_view method, const std::string& pattern, Handler handler) {
  const auto bare = [handler](const httplib::Request& request, Reply& reply) {
    handler(request, {}, reply);
  };
  const auto reading = [this, handler = std::move(handler)](const httplib::Request& request,
                                                            Reply& reply,
                                                            const httplib::ContentReader& read) {
    auto body = receiveBody(request, read, longestBody(request.path));
    if (body) return handler(request, *body, reply);
    finish(request, {}, std::move(body).error(), reply);
  };
  if (method == "GET") http_.Get(pattern, bare);
  if (method == "POST") http_.Post(pattern, reading);
  if (method == "PUT") http_.Put(pattern, reading);
  if (method == "PATCH") http_.Patch(pattern, reading);
  if (method == "DELETE") http_.Delete(pattern, reading);
}

Answer Sandbox::Server::answerWithFault(const Route& route, const httplib::Request& request,
                                        const std::string& body) {
  // HEAD asks for no more than the head of what GET would be answered.
  const bool isForApps = route.access != Access::everyone && request.method == route.method;
  const auto fault = isForApps ? service_.faults.take(route) : std::nullopt;
  if (!fault) return answer(route, request, body);
  const FaultKind& kind = *fault->kind;
  auto place = kind.waits ? service_.waiting.take() : nullptr;
  if (kind.waits && !place) return tooManyWait();
  using enum FaultKind::Moment;
  if (kind.moment == before && !pause(*fault, *Connection::of(request))) return {.status = 0};
  Answer result = kind.moment == instead ? Answer() : answer(route, request, body);
  const bool isRepetition = result.isRepetition;
  const FaultKind::Place here{request.target, request.get_header_value("Host"), port_};
  if (kind.spoil) kind.spoil(fault->settings, here, result);
  result.isRepetition = isRepetition;
  result.place = std::move(place);
  result.end = fault->end;
  return result;
}

bool Sandbox::Server::pause(const Fault& fault, const Connection& connection) const {
  const std::chrono::duration<double> seconds(*number(fault.settings.find("seconds")->second));
  const auto time = std::chrono::ceil<std::chrono::milliseconds>(seconds);
  if (!pause_) return connection.waitForHangUp(*fault.end, time);
  pause_(time);
  return true;
}

Answer Sandbox::Server::answer(const Route& route, const httplib::Request& request,
                               const std::string& body) {
  Call call{
      .service = service_, .token = {}, .parameters = {}, .query = request.params, .data = {}};
  if (route.access == Access::customer) {
    call.token = customerToken(request.get_header_value("Authorization"));
  }
  if (auto rejected = rejection(route.access, request, call.token)) return *std::move(rejected);
  if (route.body == Body::data) {
    Outcome data = dataOf(body);
    if (!data) return answerFor(data.error());
    call.data = *std::move(data);
  }
  for (std::size_t group = 1; group < request.matches.size(); ++group) {
    call.parameters.push_back(request.matches[group].str());
  }
  return handle(route, call, request, body);
}

Answer Sandbox::Server::handle(const Route& route, const Call& call,
                               const httplib::Request& request, const std::string& body) {
  const std::string key = request.get_header_value("Idempotency-Key");
  const bool isHonoured = route.access == Access::customer && route.method == "POST";
  if (key.empty() || !isHonoured) return route.handle(call);
  // Tokens hold no line break, as no header does.
  return service_.answers.answerOnce(
      {.key = call.token + "\n" + key, .content = request.target + "\n" + body},
      [&] { return route.handle(call); });
}

std::optional<Answer> Sandbox::Server::rejection(Access access, const httplib::Request& request,
                                                 const std::string& token) const {
  if (access == Access::everyone) {
    if (!limits_.isPublic || isFromTester(request)) return std::nullopt;
    return Answer{.status = 401, .headers = {{"WWW-Authenticate", kChallenge}}};
  }
  if (!service_.admitsAppVersion(request.get_header_value("App-Version"))) {
    return upgradeAnswer();
  }
  if (appToken_ && request.get_header_value("App-Token") != *appToken_) {
    return Answer{.status = 401};
  }
  if (access == Access::customer && !service_.state.hasCustomer(token)) {
    return Answer{.status = 401};
  }
  return std::nullopt;
}

bool Sandbox::Server::isFromTester(const httplib::Request& request) const {
  // Browsers ask their user for it, and send it with all that a page asks for.
  const auto basic = httplib::make_basic_authentication_header(kTester, *appToken_);
  return request.get_header_value("App-Token") == *appToken_ ||
         request.get_header_value("Authorization") == basic.second;
}

void Sandbox::Server::tell(std::string method, std::string target, int status,
                           std::chrono::duration<double, std::milli> duration) const {
  if (!onRequest_) return;
  onRequest_({.method = std::move(method),
              .target = std::move(target),
              .status = status,
              .duration = duration});
}

void Sandbox::Server::finish(const httplib::Request& request, const std::string& body,
                             Answer answer, Reply& reply) {
  Connection& connection = *Connection::of(request);
  tell(request.method, request.target, answer.status, connection.age());
  if (!isTesters(request.path)) {
    service_.requests.add({.method = request.method,
                           .target = request.target,
                           .headers = connection.head().fields,
                           .body = body,
                           .status = answer.status,
                           .answerBody = answer.body,
                           .time = dateText(service_.state.now()),
                           .milliseconds = std::floor(connection.age().count() * 1000) / 1000,
                           .isRepetition = answer.isRepetition});
  }
  // Clients repeat of their own accord what ends without an answer on a connection that was kept:
  // they would not meet the fault.
  if (service_.faults.areInForce()) connection.endWithAnswer();
  deliver(std::move(answer), connection, reply);
}

}  // namespace ovinta::sandbox
