#include "cli/track/LiveTrack.h"

#include <chrono>

#include "cli/client/ClientServices.h"
#include "platform/linux/Linux.h"

namespace ovinta::cli {
namespace {

constexpr std::chrono::milliseconds kWatchInterval{200};

}  // namespace

LiveTrack::LiveTrack(const ClientOptions& options, Interruption& interruption)
    : options_(options),
      interruption_(interruption),
      report_(options.json, [] { return platform::services().clock->now(); }) {
  platform::Services services = clientServices(options);
  session_ = std::make_shared<ObservedURLSession>(
      services.urlSession, [this](const Exchange& exchange) { report_.add(exchange); });
  services.urlSession = session_;
  platform::install(std::move(services));
}

ExitCode LiveTrack::run() {
  if (!platform::services().location->locationServicesEnabled()) {
    Output(options_.json)
        .printFailure("No Position",
                      "location services are off on this system, so that its own position cannot "
                      "be followed.");
    return ExitCode::failure;
  }
  configureLibrary(options_);
  positions_ = platform::services().notificationCenter->addObserver(
      SDKNotification::locationUpdate, [this](const platform::Notification& notification) {
        const auto* location = notification.objectAs<platform::Location>();
        if (location) report_.setSituation({.distance = nearestSiteDistance(*location)});
      });
  fetchOrders();
  watch();
  platform::linux::runMainLoop();
  if (isFollowing_) end_ = report_.summarize();
  interruption_.check();
  return end_.value_or(ExitCode::success);
}

void LiveTrack::fetchOrders() {
  Ovinta::orders().fetch([this](const auto& /*orders*/, const ErrorPtr& error) {
    platform::services().mainQueue->async([this, error] {
      const Output output(options_.json);
      if (error) {
        output.print(*error);
        end_ = ExitCode::failure;
      } else if (openOrders().empty()) {
        output.printFailure("Nothing to Follow", "No order of the customer is open.");
        end_ = ExitCode::failure;
      } else {
        isFollowing_ = true;
        report_.begin();
      }
    });
  });
}

void LiveTrack::watch() {
  const bool isOver = isFollowing_ && openOrders().empty();
  if (end_ || isOver || interruption_.happened()) return platform::linux::quitMainLoop();
  platform::services().mainQueue->asyncAfter(kWatchInterval, [this] { watch(); });
}

}  // namespace ovinta::cli
