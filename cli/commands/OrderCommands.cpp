#include "cli/client/NumberOptions.h"
#include "cli/client/OrderReports.h"
#include "cli/client/Secret.h"
#include "cli/commands/Commands.h"

namespace ovinta::cli {
namespace {

constexpr const char* kOpen = "open";

struct Fetch {
  std::optional<std::string> pushToken;
  /// Which of them to show; empty for all.
  std::string only;
};

struct Event {
  std::int64_t orderID = 0;
  std::string customerState;
  std::string state;
};

struct Rating {
  std::int64_t orderID = 0;
  std::int64_t rating = 0;
  std::optional<std::string> comments;
};

/// The orders that are asked for, of those that have been fetched.
std::optional<OrderList> chosen(const Fetch& fetch, const std::optional<OrderList>& all) {
  if (!all || fetch.only.empty()) return all;
  return fetch.only == kOpen ? Ovinta::orders().open() : Ovinta::orders().closed();
}

ExitCode fetchOrders(Client& client, const Fetch& fetch) {
  if (fetch.pushToken) Ovinta::updatePushToken(*fetch.pushToken);
  return client.perform(
      [&](const Client::Report& report) {
        Ovinta::orders().fetch([&fetch, report](const auto& orders, const ErrorPtr& error) {
          report(optionalResult(chosen(fetch, orders)), error);
        });
      },
      kNoData);
}

/// The library never reads its order store back, so the command does.
ExitCode listStoredOrders(Client& client, const NoOptions& /*options*/) {
  std::error_code ignored;
  const bool isThere = exists(orderStoreFile(platform::services()), ignored);
  const auto stored = isThere ? readStoredOrders() : std::vector<CoreOrder>();
  if (!stored) {
    client.output().printFailure("No Orders", "The order store cannot be read: " + stored.error());
    return ExitCode::failure;
  }
  client.output().print(resultOf(*stored));
  return ExitCode::success;
}

ExitCode findOrder(Client& client, const std::string& code) {
  return performOrder(client, [&](OrderCallback callback) {
    Ovinta::orders().fetchWithRedemptionCode(code, std::move(callback));
  });
}

/// Runs an operation that reports an event. The order it answers with is one that was fetched
/// before in the same process, so that here there is none.
ExitCode performEvent(Client& client, const std::function<void(OrderCallback)>& start) {
  const std::string_view reasonForSilence = Ovinta::customer().current()
                                                ? "the service said that the order is gone."
                                                : "there is no customer to speak for.";
  return client.perform(
      [&](const Client::Report& report) {
        start([report](const OrderPtr& /*order*/, const ErrorPtr& error) {
          reportDone(report, error, "The service has taken the event.");
        });
      },
      reasonForSilence);
}

ExitCode sendEvent(Client& client, const Event& event) {
  return performEvent(client, [&](OrderCallback callback) {
    if (const auto state = stateFromWireString<CustomerState>(event.customerState)) {
      Ovinta::orders().event(event.orderID, *state, std::move(callback));
    } else {
      Ovinta::orders().event(event.orderID, *stateFromWireString<OrderState>(event.state),
                             std::move(callback));
    }
  });
}

ExitCode rateOrder(Client& client, const Rating& rating) {
  return performEvent(client, [&](OrderCallback callback) {
    Ovinta::orders().rateOrder(rating.orderID, rating.rating, rating.comments, std::move(callback));
  });
}

void addReadingCommands(ClientCommands& commands) {
  commands.add<Fetch>(
      "fetch", "Get all orders and keep their summaries",
      [](CLI::App& command, Fetch& fetch) {
        addSecretOption(command, "--push-token", fetch.pushToken,
                        "The device's push token, for open orders that have none");
        command.add_option("--only", fetch.only, "Show these alone")
            ->check(CLI::IsMember({kOpen, "closed"}));
      },
      fetchOrders);
  commands.add<NoOptions>("list", "Show the summaries that are kept, without asking the service",
                          addNoOptions, listStoredOrders);
  commands.add<std::string>(
      "find", "Look an order up by its redemption code",
      [](CLI::App& command, std::string& code) {
        command.add_option("code", code, "The redemption code")->required();
      },
      findOrder);
}

void addEventCommands(ClientCommands& commands) {
  commands.add<Event>(
      "event", "Report a state of the customer's journey or of the order",
      [](CLI::App& command, Event& event) {
        addNumber(command, "order", event.orderID, "The order's number")->required();
        CLI::Option_group* states = command.add_option_group("state");
        states->add_option("--customer-state", event.customerState, "Of the journey")
            ->check(CLI::IsMember(stateNames<CustomerState>()));
        states->add_option("--state", event.state, "Of the order")
            ->check(CLI::IsMember(stateNames<OrderState>()));
        states->require_option(1);
      },
      sendEvent);
  commands.add<Rating>(
      "rate", "Rate an order",
      [](CLI::App& command, Rating& rating) {
        addNumber(command, "order", rating.orderID, "The order's number")->required();
        addNumber(command, "rating", rating.rating, "The rating")->required();
        command.add_option("--comment", rating.comments, "What the customer says");
      },
      rateOrder);
}

}  // namespace

void addOrderCommands(CLI::App& app, int& exitCode) {
  CLI::App* group = app.add_subcommand("orders", "The customer's orders");
  group->require_subcommand(1);
  ClientCommands commands(*group, exitCode);
  addReadingCommands(commands);
  addOrderMakingCommands(*group, exitCode);
  addEventCommands(commands);
  addWatchCommand(*group, exitCode);
}

}  // namespace ovinta::cli
