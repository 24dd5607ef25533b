#include "platform/linux/position/PortalProvider.h"

#include <cstdint>
#include <string>
#include <utility>

#include "platform/linux/position/DistanceThreshold.h"
#include "platform/linux/position/PositionProperties.h"
#include "platform/linux/position/ServiceAttempts.h"

namespace ovinta::platform::linux {
namespace {

constexpr const char* kSession = "org.freedesktop.portal.Session";
constexpr const char* kRequest = "org.freedesktop.portal.Request";
constexpr std::uint32_t kExact = 5;

/// What the answer to a request says.
PositionAccess accessAfter(std::uint32_t response) {
  if (response == 0) return PositionAccess::granted;
  return response == 1 ? PositionAccess::denied : PositionAccess::undecided;
}

/// Names a session or a request of this process.
std::string makeToken() {
  static int count = 0;
  return "ovinta" + std::to_string(++count);
}

/// One session of the portal, made anew whenever it has ended.
class PortalStream : public PositionStream {
 public:
  PortalStream(std::shared_ptr<dbus::Bus> bus, std::shared_ptr<MainQueue> mainQueue,
               TimeInterval retryInterval, double distanceFilter, PositionHandlers handlers)
      : bus_(std::move(bus)),
        distanceFilter_(distanceFilter),
        handlers_(std::move(handlers)),
        attempts_(
            bus_, std::move(mainQueue), {kPortalName, retryInterval}, [this] { create(); },
            [this] { forgetSession(); }) {
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
  void use(std::string session);
  void applyFilter();
  void noteResponse(const dbus::Signal& signal);
  void noteUpdate(const dbus::Signal& signal);
  void fail(PositionAccess access);
  void forgetSession();
  void close();

  const std::shared_ptr<dbus::Bus> bus_;
  double distanceFilter_;
  /// That of the present session.
  double sessionFilter_ = 0;
  const PositionHandlers handlers_;
  std::string session_;
  std::string requestToken_;
  /// Hears of the session; null while there is none.
  std::unique_ptr<dbus::Service> service_;
  ServiceAttempts attempts_;
};

void PortalStream::create() {
  service_ = std::make_unique<dbus::Service>(bus_, kPortalName);
  sessionFilter_ = distanceFilter_;
  const dbus::Properties options{
      {"session_handle_token", dbus::write(makeToken())},
      {"distance-threshold", dbus::write(distanceThreshold(distanceFilter_))},
      {"time-threshold", dbus::write(std::uint32_t{0})},
      {"accuracy", dbus::write(kExact)}};
  service_->call(kPortalPath, kPortalLocation, "CreateSession", dbus::arguments(options),
                 [this](const dbus::Reply& reply) {
                   const auto path = dbus::read<dbus::ObjectPath>(reply.values, 0);
                   path ? use(path->raw()) : fail(PositionAccess::absent);
                 });
}

void PortalStream::use(std::string session) {
  session_ = std::move(session);
  requestToken_ = makeToken();
  // The answer may come before that of the call that asks for it.
  service_->onSignal("", kRequest, "Response",
                     [this](const dbus::Signal& signal) { noteResponse(signal); });
  service_->onSignal(kPortalPath, kPortalLocation, "LocationUpdated",
                     [this](const dbus::Signal& signal) { noteUpdate(signal); });
  service_->onSignal(session_, kSession, "Closed", [this](const dbus::Signal&) {
    session_.clear();
    fail(PositionAccess::undecided);
  });
  const dbus::Properties options{{"handle_token", dbus::write(requestToken_)}};
  service_->call(kPortalPath, kPortalLocation, "Start",
                 dbus::arguments(dbus::ObjectPath(session_), "", options),
                 [this](const dbus::Reply& reply) {
                   if (reply.failure) fail(PositionAccess::absent);
                 });
}

void PortalStream::noteResponse(const dbus::Signal& signal) {
  if (!signal.object.ends_with("/" + requestToken_)) return;
  const auto access = accessAfter(dbus::read<std::uint32_t>(signal.arguments, 0).value_or(2));
  if (access != PositionAccess::granted) return fail(access);
  attempts_.succeeded();
  // It may have changed while the user was asked.
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
  if (!session || session->raw() != session_) return;
  const auto properties = dbus::read<dbus::Properties>(signal.arguments, 1);
  const auto location = properties ? readPosition(*properties) : std::nullopt;
  const auto handler = handlers_.onLocation;
  if (location) handler(*location);
}

void PortalStream::fail(PositionAccess access) {
  close();
  // A refusal is final: to insist would ask the user again.
  attempts_.failed(access != PositionAccess::denied);
  const auto handler = handlers_.onAccess;
  handler(access);
}

void PortalStream::forgetSession() {
  service_ = nullptr;
  session_.clear();
}

void PortalStream::close() {
  if (!session_.empty()) service_->call(session_, kSession, "Close", {}, {});
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

std::unique_ptr<PositionStream> PortalProvider::open(double distanceFilter,
                                                     PositionHandlers handlers) {
  return std::make_unique<PortalStream>(bus_, mainQueue_, retryInterval_, distanceFilter,
                                        std::move(handlers));
}

}  // namespace ovinta::platform::linux
