#include <utility>

#include "cli/client/ClientCommands.h"
#include "cli/client/RecordFile.h"
#include "cli/client/Records.h"
#include "cli/commands/Commands.h"

namespace ovinta::cli {
namespace {

constexpr std::string_view kSilence = "the orders could not be fetched for lack of an answer.";

/// Reports what the library tells its observers of, since a push has no callback of its own.
auto observeOrders(const Client::Report& report) {
  const auto observe = [](platform::NotificationName name, auto tell) {
    return platform::services().notificationCenter->addObserver(name, std::move(tell));
  };
  const auto reportOrders = [report](const platform::Notification& /*notification*/) {
    report(optionalResult(Ovinta::orders().all()), nullptr);
  };
  std::vector<std::unique_ptr<platform::NotificationObserver>> observers;
  observers.push_back(observe(SDKNotification::orderUpdated, reportOrders));
  observers.push_back(observe(SDKNotification::ordersUpdated, reportOrders));
  observers.push_back(
      observe(SDKNotification::ordersError, [report](const platform::Notification& notification) {
        const auto* error = notification.objectAs<ErrorPtr>();
        report(std::nullopt, error ? *error : nullptr);
      }));
  return observers;
}

ExitCode push(Client& client, const std::string& file) {
  const platform::Dictionary payload = readRecordFile(file, "payload");
  // A running app has its orders; this process has to get them first.
  const Outcome fetched = client.await([](const Client::Report& report) {
    Ovinta::orders().fetch(
        [report](const auto& /*orders*/, const ErrorPtr& error) { report(std::nullopt, error); });
  });
  if (!fetched.reported || fetched.error) return client.report(fetched, kSilence);
  decltype(observeOrders({})) observers;
  return client.perform(
      [&](const Client::Report& report) {
        observers = observeOrders(report);
        Ovinta::handleRemoteNotification(payload);
      },
      kSilence);
}

}  // namespace

void addPushCommand(CLI::App& app, int& exitCode) {
  ClientCommands(app, exitCode)
      .add<std::string>(
          "push", "Apply the payload of a push, and show the orders as they then are",
          [](CLI::App& command, std::string& file) {
            command.add_option("payload", file, "JSON file of the payload; \"-\": standard input")
                ->required()
                ->type_name("FILE");
          },
          push);
}

}  // namespace ovinta::cli
