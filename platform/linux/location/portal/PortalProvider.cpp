#include "platform/linux/location/portal/PortalProvider.h"

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "platform/linux/location/PositionProperties.h"
#include "platform/linux/location/ServiceAttempts.h"
#include "platform/portable/Lifetime.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr const char* kSession = "org.freedesktop.portal.Session";
constexpr const char* kRequest = "org.freedesktop.portal.Request";
constexpr std::uint32_t kExact = 5;

/// What the answer to a request says of the permission: the user's word, or that the portal could
/// not go on.
PositionAccess accessAfter(std::uint32_t response) {
  if (response == 0) return PositionAccess::granted;
  return response == 1 ? PositionAccess::denied : PositionAccess::absent;
}

/// What a call that failed says of the permission.
PositionAccess accessAfter(const dbus::Failure& failure) {
  const bool isOff = failure.name == "org.freedesktop.portal.Error.NotAllowed" &&
                     failure.message.starts_with("Location services disabled");
  return isOff ? PositionAccess::off : PositionAccess::absent;
}

/// Closes a session or a request, which another portal than the one that made it does not know.
void closeObject(std::shared_ptr<dbus::Bus> bus, const std::string& path, const char* interface) {
  if (bus && !path.empty())
    dbus::Service(std::move(bus), kPortalName).tell(path, interface, "Close");
}

/// A name for a session or a request, unique in this process.
std::string makeToken() {
  static int count = 0;
  return "ovinta" + std::to_string(++count);
}

/// One session of the portal, made anew whenever it has ended.
class PortalStream : public PositionStream {
 public:
  using Reason = ServiceAttempts::Reason;

  PortalStream(std::shared_ptr<dbus::Bus> bus, std::shared_ptr<MainQueue> mainQueue,
               TimeInterval retryInterval, double distanceFilter, PositionHandlers handlers)
      : bus_(std::move(bus)),
        distanceFilter_(distanceFilter),
        handlers_(std::move(handlers)),
        attempts_(bus_, std::move(mainQueue), {kPortalName, retryInterval},
                  {.begin = [this] { create(); },
                   .forget = [this] { forgetSession(); },
                   .fail = [this] { end(PositionAccess::absent, Reason::passing); }}) {
    attempts_.begin();
  }
  ~PortalStream() override { close(); }

  /// A session's threshold is fixed: another one takes its place.
  void setDistanceFilter(double metres) override {
    distanceFilter_ = metres;
    if (attempts_.hasSucceeded()) applyFilter();
  }

 private:
  void create();
  void start();
  void listen();
  void applyFilter();
  void noteResponse(const dbus::Signal& signal);
  void noteUpdate(const dbus::Signal& signal);
  void fail(const dbus::Failure& failure);
  void end(PositionAccess access, Reason reason);
  /// Makes a call and hands the path in its answer on; one that comes when the attempt is over is
  /// closed.
  void callForPath(const char* method, dbus::Variant arguments, const char* interface,
                   std::function<void(std::string)> handler);
  void forgetSession();
  void close();

  const std::shared_ptr<dbus::Bus> bus_;
  double distanceFilter_;
  /// The distance filter of the present session, in metres.
  double sessionFilter_ = 0;
  const PositionHandlers handlers_;
  std::string session_;
  /// The path of the question to the user; empty while there is none.
  std::string request_;
  std::string requestToken_;
  /// The service as the session's signals come from it; null while there is no session.
  std::unique_ptr<dbus::Service> service_;
  ServiceAttempts attempts_;
  /// The attempt under way, or what it has got; none without either.
  std::optional<portable::Lifetime> attempt_;
};

void PortalStream::callForPath(const char* method, dbus::Variant arguments, const char* interface,
                               std::function<void(std::string)> handler) {
  dbus::MethodCall call{kPortalName, kPortalPath,          kPortalLocation,
                        method,      std::move(arguments), dbus::kNoTimeout};
  bus_->call(std::move(call),
             [this, interface, handler = std::move(handler), weak = std::weak_ptr(bus_),
              attempt = attempt_->watch()](const dbus::Reply& reply) {
               const auto path = dbus::read<dbus::ObjectPath>(reply.values, 0);
               if (attempt.expired()) {
                 if (path) closeObject(weak.lock(), *path, interface);
               } else if (path) {
                 handler(*path);
               } else {
                 fail(reply.failure.value_or(dbus::Failure{}));
               }
             });
}

void PortalStream::create() {
  attempt_.emplace();
  sessionFilter_ = distanceFilter_;
  const dbus::Properties options{
      {"session_handle_token", dbus::write(makeToken())},
      {"distance-threshold", dbus::write(distanceThreshold(distanceFilter_))},
      {"time-threshold", dbus::write(std::uint32_t{0})},
      {"accuracy", dbus::write(kExact)}};
  callForPath("CreateSession", dbus::arguments(options), kSession, [this](std::string session) {
    session_ = std::move(session);
    listen();
    start();
  });
}

void PortalStream::listen() {
  service_ = std::make_unique<dbus::Service>(bus_, kPortalName);
  // The signal is listened for beforehand, because the user's answer may come before that of the
  // call that asks for it.
  service_->onSignal("", kRequest, "Response",
                     [this](const dbus::Signal& signal) { noteResponse(signal); });
  service_->onSignal(kPortalPath, kPortalLocation, "LocationUpdated",
                     [this](const dbus::Signal& signal) { noteUpdate(signal); });
  service_->onSignal(session_, kSession, "Closed", [this](const dbus::Signal&) {
    session_.clear();
    end(PositionAccess::undecided, Reason::passing);
  });
}

void PortalStream::start() {
  requestToken_ = makeToken();
  const dbus::Properties options{{"handle_token", dbus::write(requestToken_)}};
  callForPath("Start", dbus::arguments(dbus::ObjectPath(session_), "", options), kRequest,
              [this](std::string request) {
                if (!attempts_.hasSucceeded()) request_ = std::move(request);
              });
}

void PortalStream::noteResponse(const dbus::Signal& signal) {
  if (!signal.object.ends_with("/" + requestToken_)) return;
  const auto access = accessAfter(dbus::read<std::uint32_t>(signal.arguments, 0).value_or(2));
  // The request ends with its answer.
  request_.clear();
  // A refusal is final: to insist would ask the user again.
  if (access == PositionAccess::denied) return end(access, Reason::lasting);
  if (access != PositionAccess::granted) return end(access, Reason::passing);
  attempts_.succeeded();
  // The distance filter may have changed while the user was asked.
  applyFilter();
  const auto handler = handlers_.onAccess;
  handler(access);
}

void PortalStream::applyFilter() {
  if (sessionFilter_ == distanceFilter_) return;
  close();
  attempts_.begin();
}

void PortalStream::noteUpdate(const dbus::Signal& signal) {
  const auto session = dbus::read<dbus::ObjectPath>(signal.arguments, 0);
  if (!session || *session != session_) return;
  const auto properties = dbus::read<dbus::Properties>(signal.arguments, 1);
  const auto location = properties ? readPosition(*properties) : std::nullopt;
  const auto handler = handlers_.onLocation;
  if (location) handler(*location);
}

void PortalStream::fail(const dbus::Failure& failure) {
  const bool isWithoutLocation =
      failure.name == dbus::kUnknownMethod || failure.name == dbus::kUnknownInterface;
  if (isWithoutLocation) {
    bus_->log(kPortalLocation, std::string(kPortalName) + " has no " + kPortalLocation);
  }
  const bool isAbsent = failure.name == dbus::kServiceUnknown;
  const Reason otherwise = isWithoutLocation ? Reason::lasting : Reason::passing;
  end(accessAfter(failure), isAbsent ? Reason::absence : otherwise);
}

void PortalStream::end(PositionAccess access, Reason reason) {
  close();
  attempts_.failed(reason);
  const auto handler = handlers_.onAccess;
  handler(access);
}

void PortalStream::forgetSession() {
  attempt_.reset();
  service_ = nullptr;
  session_.clear();
  request_.clear();
}

void PortalStream::close() {
  closeObject(bus_, request_, kRequest);
  closeObject(bus_, session_, kSession);
  forgetSession();
}

}  // namespace

PortalProvider::PortalProvider(std::shared_ptr<dbus::Bus> sessionBus,
                               std::shared_ptr<MainQueue> mainQueue, TimeInterval retryInterval)
    : bus_(sessionBus),
      mainQueue_(std::move(mainQueue)),
      retryInterval_(retryInterval),
      service_(std::move(sessionBus), kPortalName) {}

void PortalProvider::findService(std::function<void(bool)> handler) {
  service_.find(std::move(handler));
}

std::shared_ptr<void> PortalProvider::watchArrivals(const std::function<void()>& handler) {
  const auto service = std::make_shared<dbus::Service>(bus_, kPortalName);
  service->onArrival(handler);
  return service;
}

std::unique_ptr<PositionStream> PortalProvider::open(double distanceFilter,
                                                     PositionHandlers handlers) {
  return std::make_unique<PortalStream>(bus_, mainQueue_, retryInterval_, distanceFilter,
                                        std::move(handlers));
}

}  // namespace ovinta::platform::linuxos
