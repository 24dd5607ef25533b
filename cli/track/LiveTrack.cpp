#include "cli/track/LiveTrack.h"

#include <string>
#include <utility>

#include "cli/client/ClientServices.h"
#include "cli/device/TripDevice.h"
#include "platform/linux/Linux.h"

namespace ovinta::cli {
namespace {

using namespace std::chrono_literals;
using platform::services;

/// How often the library is looked at: often enough for what is shown to be new.
constexpr auto kWatchInterval = 200ms;
constexpr auto kQuestionInterval = 2s;
/// The question with which it is time to say that the answer does not come.
constexpr int kPatientQuestions = 4;

constexpr const char* kRefused =
    "The command may not know the position. Allow \"ovinta\" in the settings of the desktop or in "
    "GeoClue's configuration, and start it again.";

std::string permissionSentence(platform::AuthorizationStatus permission) {
  switch (permission) {
    case platform::kAuthorizationNotDetermined:
      return "Waiting for the permission...";
    case platform::kAuthorizationRestricted:
      return "Location is switched off for all. Switch it on in the settings of the system: the "
             "position is followed from then on.";
    default:
      return permissionText(true, permission);
  }
}

}  // namespace

LiveTrack::LiveTrack(const ClientOptions& options, const platform::linuxos::Options& system,
                     Interruption& interruption)
    : options_(options),
      interruption_(interruption),
      report_(options.json, [] { return services().clock->now(); }) {
  platform::Services linuxServices = clientServices(options, system);
  session_ = std::make_shared<ObservedURLSession>(
      linuxServices.urlSession, [this](const Exchange& exchange) { report_.add(exchange); });
  linuxServices.urlSession = session_;
  location_ =
      std::make_shared<ObservedLocationServices>(linuxServices.location, linuxServices.clock);
  linuxServices.location = location_;
  platform::install(std::move(linuxServices));
}

ExitCode LiveTrack::run() {
  configureLibrary(options_);
  pushes_.prepare(options_);
  fetchOrders();
  watch();
  platform::linuxos::runMainLoop();
  const ExitCode code = isFollowing_ ? report_.summarize() : ExitCode::success;
  interruption_.check();
  return end_.value_or(code);
}

void LiveTrack::fetchOrders() {
  Ovinta::orders().fetch([this](const auto& /*orders*/, const ErrorPtr& error) {
    services().mainQueue->async([this, error] { finishFetch(error); });
  });
  services().mainQueue->asyncAfter(kPatience, [this] {
    if (!isFollowing_ && !end_) fail("The orders cannot be fetched", "no answer came.");
  });
}

void LiveTrack::finishFetch(const ErrorPtr& error) {
  if (end_) return;
  if (error) {
    report_.showBelow({});
    Output(options_.json).print(*error);
    end_ = ExitCode::failure;
  } else if (openOrders().empty()) {
    fail("Nothing to Follow", "No order of the customer is open.");
  } else {
    isFollowing_ = true;
    report_.begin();
  }
}

void LiveTrack::fail(const std::string& title, const std::string& description) {
  report_.showBelow({});
  Output(options_.json).printFailure(title, description);
  end_ = ExitCode::failure;
}

void LiveTrack::watch() {
  const bool isOver = isFollowing_ && openOrders().empty();
  if (!end_ && !isOver) {
    if (isFollowing_) pushes_.listenAndTell();
    show();
    followPermission();
  }
  if (end_ || isOver || interruption_.happened()) return platform::linuxos::quitMainLoop();
  services().mainQueue->asyncAfter(kWatchInterval, [this] { watch(); });
}

void LiveTrack::followPermission() {
  const platform::AuthorizationStatus now = permission();
  if (std::exchange(permission_, now) != now) tellPermission();
  const bool isGranted = platform::isAuthorized(now);
  if (platform::linuxos::isLocationAuthorizationKept() ||
      (!isGranted && now != platform::kAuthorizationDenied)) {
    askPermission();
  } else if (isGranted) {
    wasGranted_ = true;
    questions_ = 0;
  } else if (!wasGranted_) {
    fail("No Permission", kRefused);
  }
}

platform::AuthorizationStatus LiveTrack::permission() const {
  const platform::AuthorizationStatus status = location_->authorizationStatus();
  return platform::isAuthorized(status) || !platform::linuxos::isLocationAuthorizationKept()
             ? status
             : platform::kAuthorizationNotDetermined;
}

void LiveTrack::askPermission() {
  const auto now = std::chrono::steady_clock::now();
  if (now < nextQuestion_) return;
  nextQuestion_ = now + kQuestionInterval;
  platform::linuxos::requestLocationAuthorization();
  if (++questions_ == kPatientQuestions && permission_ == platform::kAuthorizationNotDetermined) {
    report_.add("access", "No answer has come yet: \"ovinta doctor\" says what is missing.");
  }
}

void LiveTrack::tellPermission() {
  // A refusal before any grant ends the run, and its last message says the same.
  const bool isRefusal = *permission_ == platform::kAuthorizationDenied && wasGranted_;
  report_.add("access", isRefusal ? kRefused : permissionSentence(*permission_),
              {{"status", *permission_}});
}

void LiveTrack::show() {
  const LiveState now = state();
  report_.setSituation(now.distance, now.location);
  // The library's log goes to the same terminal.
  if (!options_.verbose) report_.showBelow(liveLines(now));
}

LiveState LiveTrack::state() const {
  const ObservedLocation& location = location_->observed();
  return {.now = services().clock->now(),
          .isEnabled = location_->locationServicesEnabled(),
          .permission = permission(),
          .location = location,
          .distance = location.location ? nearestSiteDistance(*location.location) : std::nullopt,
          .battery = services().device->batteryState(),
          .sent = report_.exchanges().counts(),
          .lastSent = report_.exchanges().last()};
}

}  // namespace ovinta::cli
