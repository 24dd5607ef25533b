#include "platform/linux/location/geoclue/GeoClueStream.h"

#include <utility>

#include "platform/linux/location/PositionProperties.h"

namespace ovinta::platform::linuxos {
namespace {

constexpr const char* kClient = "org.freedesktop.GeoClue2.Client";
constexpr const char* kLocation = "org.freedesktop.GeoClue2.Location";

/// What a failure to get a client, or to start it, says of the permission. All refusals have one
/// name.
PositionAccess accessAfterFailure(const dbus::Failure& failure) {
  if (failure.name != dbus::kAccessDenied) return PositionAccess::absent;
  return failure.message.starts_with("Geolocation disabled") ? PositionAccess::off
                                                             : PositionAccess::denied;
}

dbus::MethodCall managerCall(const char* method, dbus::Variant arguments) {
  return {kGeoClueName, kGeoClueManagerPath, kGeoClueManager, method, std::move(arguments)};
}

/// Deletes a client. Nobody waits for the answer, and another GeoClue than the one that made the
/// client does not know it.
void deleteClient(dbus::Bus& bus, const std::string& client) {
  auto call = managerCall("DeleteClient", dbus::arguments(dbus::ObjectPath(client)));
  call.startsService = false;
  bus.call(std::move(call), [](const auto&) {});
}

}  // namespace

GeoClueStream::GeoClueStream(std::shared_ptr<dbus::Bus> systemBus,
                             std::shared_ptr<MainQueue> mainQueue, Options options,
                             PositionHandlers handlers)
    : bus_(std::move(systemBus)),
      mainQueue_(std::move(mainQueue)),
      options_(std::move(options)),
      handlers_(std::move(handlers)),
      attempts_(bus_, mainQueue_, {kGeoClueName, options_.retryInterval},
                {.begin = [this] { create(); },
                 .forget = [this] { forgetClient(); },
                 .fail = [this] { failed({}); }}) {
  attempts_.begin();
}

GeoClueStream::~GeoClueStream() {
  if (client_.empty()) return;
  service_->tell(client_, kClient, "Stop");
  deleteClient(*bus_, client_);
}

void GeoClueStream::forgetClient() {
  attempt_.reset();
  service_ = nullptr;
  client_.clear();
}

void GeoClueStream::create() {
  const auto attempt = attempt_.emplace().watch();
  // GeoClue keeps the request until somebody comes who can ask the user, however often it is made.
  auto call = managerCall("CreateClient", {});
  call.timeout = dbus::kNoTimeout;
  bus_->call(std::move(call),
             [this, weak = std::weak_ptr(bus_), attempt](const dbus::Reply& reply) {
               const auto path = dbus::read<dbus::ObjectPath>(reply.values, 0);
               if (attempt.expired()) {
                 const auto bus = weak.lock();
                 if (path && bus) deleteClient(*bus, *path);
               } else if (path) {
                 use(*path);
               } else {
                 failed(reply.failure.value_or(dbus::Failure{}));
               }
             });
  mainQueue_->asyncAfter(options_.answerTimeout, [this, attempt] {
    if (!attempt.expired()) report(PositionAccess::undecided);
  });
}

void GeoClueStream::use(std::string client) {
  client_ = std::move(client);
  service_ = std::make_unique<dbus::Service>(bus_, kGeoClueName);
  service_->onSignal(client_, kClient, "LocationUpdated",
                     [this](const dbus::Signal& signal) { update(signal); });
  service_->onPropertiesChanged(client_, kClient,
                                [this](const std::string&, const dbus::Properties& changed) {
                                  if (const auto isActive = dbus::read<bool>(changed, "Active"))
                                    noteActive(*isActive);
                                });
  service_->setProperty(client_, kClient, "DesktopId", dbus::write(options_.desktopID));
  service_->setProperty(client_, kClient, "RequestedAccuracyLevel", dbus::write(kGeoClueExact));
  setThreshold();
  const auto started = [this](const dbus::Reply& reply) {
    if (reply.failure) return failed(*reply.failure);
    attempt_.reset();
    attempts_.succeeded();
    report(options_.granted);
  };
  // There is no time limit, because it may be only now that the user is asked.
  service_->call(client_, kClient, "Start", {}, started, dbus::kNoTimeout);
}

void GeoClueStream::failed(const dbus::Failure& failure) {
  if (!client_.empty()) deleteClient(*bus_, client_);
  forgetClient();
  const PositionAccess access = accessAfterFailure(failure);
  using enum ServiceAttempts::Reason;
  const bool isAbsent = failure.name == dbus::kServiceUnknown;
  // A refusal is final: to insist might ask the user again.
  const auto reason = access == PositionAccess::denied ? lasting : passing;
  attempts_.failed(isAbsent ? absence : reason);
  report(access);
}

void GeoClueStream::noteActive(bool isActive) {
  // This is the user's switch. At the start nothing is told of it, because the answer to the start
  // tells the same.
  if (attempts_.hasSucceeded()) report(isActive ? options_.granted : PositionAccess::off);
}

void GeoClueStream::update(const dbus::Signal& signal) {
  const auto path = dbus::read<dbus::ObjectPath>(signal.arguments, 1);
  if (!path) return;
  service_->getProperties(*path, kLocation, [this](const dbus::Properties& properties) {
    const auto location = readPosition(properties);
    // A copy is called, because the handler may destroy the stream.
    const auto handler = handlers_.onLocation;
    if (location) handler(*location);
  });
}

void GeoClueStream::setDistanceFilter(double metres) {
  if (std::exchange(options_.distanceFilter, metres) != metres && service_) setThreshold();
}

void GeoClueStream::setThreshold() {
  service_->setProperty(client_, kClient, "DistanceThreshold",
                        dbus::write(distanceThreshold(options_.distanceFilter)));
}

void GeoClueStream::report(PositionAccess access) {
  const auto handler = handlers_.onAccess;
  handler(access);
}

}  // namespace ovinta::platform::linuxos
