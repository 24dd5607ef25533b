#include "cli/client/Client.h"

#include <mutex>
#include <utility>

#include "cli/client/ClientServices.h"
#include "cli/client/ObservedURLSession.h"
#include "platform/simulation/location/SimulatedLocation.h"

namespace ovinta::cli {

Client::Client(const ClientOptions& options, bool simulatesLocation) : output_(options.json) {
  platform::Services services = clientServices(options);
  services.operationQueues = counting(services.operationQueues, activity_);
  services.userNotifications = counting(services.userNotifications, activity_);
  services.urlSession = std::make_shared<ObservedURLSession>(
      counting(services.urlSession, activity_), [answered = answered_](const Exchange&) {
        if (*answered) (*answered)();
      });
  if (simulatesLocation) {
    services.location = std::make_shared<platform::simulation::SimulatedLocation>(
        services.mainQueue, services.geodesy);
  }
  platform::install(std::move(services));
  configureLibrary(options);
}

void Client::showProgress(std::string text) {
  const std::lock_guard lock(waitingMutex_);
  if (waiting_) waiting_->tell(std::move(text));
}

void Client::setWaiting(std::unique_ptr<Waiting> waiting) {
  const std::lock_guard lock(waitingMutex_);
  waiting_ = std::move(waiting);
}

Outcome Client::await(const std::function<void(Report)>& start) {
  struct Shared {
    std::mutex mutex;
    Outcome outcome;
  };
  const auto shared = std::make_shared<Shared>();
  setWaiting(std::make_unique<Waiting>("Waiting for the service"));
  start([shared](std::optional<Result> result, ErrorPtr error) {
    const std::lock_guard lock(shared->mutex);
    Outcome& outcome = shared->outcome;
    outcome.reported = true;
    if (result) outcome.result = std::move(result);
    if (!outcome.error) outcome.error = std::move(error);
  });
  activity_->waitUntilIdle();
  setWaiting(nullptr);
  const std::lock_guard lock(shared->mutex);
  return shared->outcome;
}

ExitCode Client::report(const Outcome& outcome, std::string_view reasonForSilence) const {
  if (!outcome.reported) {
    output_.printFailure("No answer comes, by design", std::string(reasonForSilence));
    return ExitCode::noCallback;
  }
  // Arming in a region can fail and have its sites all the same.
  if (outcome.result) output_.print(*outcome.result);
  if (!outcome.error) return ExitCode::success;
  output_.print(*outcome.error);
  return ExitCode::failure;
}

}  // namespace ovinta::cli
