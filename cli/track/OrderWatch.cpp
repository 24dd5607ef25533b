#include "cli/track/OrderWatch.h"

#include <chrono>
#include <utility>

#include "cli/client/ClientServices.h"
#include "platform/linux/Linux.h"

namespace ovinta::cli {
namespace {

using platform::services;

/// How soon an interruption and the end of the last order are noticed.
constexpr std::chrono::milliseconds kOrderInterval{100};

}  // namespace

OrderWatch::OrderWatch(const ClientOptions& options, Interruption& interruption)
    : options_(options),
      interruption_(interruption),
      report_(options.json, [] { return services().clock->now(); }) {
  platform::Services system = clientServices(options);
  session_ = std::make_shared<ObservedURLSession>(
      system.urlSession, [this](const Exchange& exchange) { report_.add(exchange); });
  system.urlSession = session_;
  platform::install(std::move(system));
}

ExitCode OrderWatch::run() {
  configureLibrary(options_);
  pushes_.prepare(options_);
  waiting_.emplace("Waiting for the service");
  Ovinta::orders().fetch([this](const auto& /*orders*/, const ErrorPtr& error) {
    services().mainQueue->async([this, error] { finishFetch(error); });
  });
  watch();
  platform::linuxos::runMainLoop();
  waiting_.reset();
  interruption_.check();
  return failure_ ? *failure_ : report_.summarize();
}

void OrderWatch::finishFetch(const ErrorPtr& error) {
  waiting_.reset();
  const Output output(options_.json);
  if (error) {
    output.print(*error);
  } else if (openOrders().empty()) {
    output.printFailure("Nothing to Watch", "No order of the customer is open.");
  } else {
    isWatching_ = true;
    report_.begin();
    return;
  }
  failure_ = ExitCode::failure;
}

void OrderWatch::watch() {
  if (isWatching_) watchPushes();
  const bool isOver = failure_ || (isWatching_ && openOrders().empty());
  if (isOver || interruption_.happened()) return platform::linuxos::quitMainLoop();
  services().mainQueue->asyncAfter(kOrderInterval, [this] { watch(); });
}

void OrderWatch::watchPushes() {
  pushes_.listen();
  const auto reason = pushes_.failure();
  if (!reason || openOrders().empty() || interruption_.happened()) return;
  Output(options_.json).printFailure("No Pushes", *reason + ".");
  failure_ = ExitCode::failure;
}

}  // namespace ovinta::cli
