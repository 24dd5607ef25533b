#include "cli/Commands.h"
#include "cli/client/ClientCommands.h"
#include "cli/client/CustomerOptions.h"
#include "cli/client/Records.h"

namespace ovinta::cli {
namespace {

constexpr std::string_view kSilence = "the service's answer had no body at all.";
constexpr std::string_view kEventSilence =
    "there is no customer to speak for, or the service said that the order is gone.";

struct Creation {
  std::int64_t siteID = 0;
  std::string partnerIdentifier;
  CustomerInfo customer;
};

struct Claim {
  std::string code;
  CustomerInfo customer;
  std::optional<std::string> pickupType;
  bool consents = false;
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

/// A callback that reports the order, where there is one.
OrderCallback reporting(const Client::Report& report) {
  return [report](const OrderPtr& order, const ErrorPtr& error) {
    report(order ? std::optional(valueOf(*order)) : std::nullopt, error);
  };
}

ExitCode performOrder(Client& client, const std::function<void(OrderCallback)>& start,
                      std::string_view reasonForSilence = kSilence) {
  return client.perform([&](const Client::Report& report) { start(reporting(report)); },
                        reasonForSilence);
}

/// The wire strings of an enumeration's states.
template <class State>
std::vector<std::string> stateNames() {
  std::vector<std::string> names;
  for (const auto& row : StateTable<State>::kRows) names.emplace_back(row.wireString);
  return names;
}

ExitCode fetchOrders(Client& client, const NoInput& /*input*/) {
  return client.perform(
      [](const Client::Report& report) {
        Ovinta::orders().fetch([report](const auto& orders, const ErrorPtr& error) {
          report(orders ? std::optional(valueOf(*orders)) : std::nullopt, error);
        });
      },
      kSilence);
}

ExitCode sendEvent(Client& client, const Event& event) {
  return performOrder(
      client,
      [&](OrderCallback callback) {
        if (const auto state = stateFromWireString<CustomerState>(event.customerState)) {
          Ovinta::orders().event(event.orderID, *state, std::move(callback));
        } else {
          Ovinta::orders().event(event.orderID, *stateFromWireString<OrderState>(event.state),
                                 std::move(callback));
        }
      },
      kEventSilence);
}

ExitCode claimOrder(Client& client, const Claim& claim) {
  return performOrder(client, [&](OrderCallback callback) {
    if (claim.consents) {
      Ovinta::orders().claimWithRedemptionCode(
          claim.code,
          ClaimOrderInfo::withCustomerInfo(claim.customer, Ovinta::pushToken(), claim.pickupType),
          CustomerConsent{.termsOfService = true, .ageVerification = true}, std::move(callback));
    } else {
      Ovinta::orders().claimWithRedemptionCode(claim.code, claim.customer, claim.pickupType,
                                               std::move(callback));
    }
  });
}

void addMakingCommands(ClientCommands& commands) {
  commands.add<Creation>(
      "create", "Create an order; with no customer yet, the customer too",
      [](CLI::App& command, Creation& creation) {
        command.add_option("--site", creation.siteID, "The site's number")->required();
        command.add_option("--partner-id", creation.partnerIdentifier, "Your name for the order")
            ->required();
        addCustomerOptions(command, creation.customer);
      },
      [](Client& client, const Creation& creation) {
        return performOrder(client, [&](OrderCallback callback) {
          Ovinta::orders().create(creation.siteID, creation.partnerIdentifier, creation.customer,
                                  std::nullopt, std::move(callback));
        });
      });
  commands.add<std::string>(
      "find", "Look an order up by its redemption code",
      [](CLI::App& command, std::string& code) {
        command.add_option("code", code, "The redemption code")->required();
      },
      [](Client& client, const std::string& code) {
        return performOrder(client, [&](OrderCallback callback) {
          Ovinta::orders().fetchWithRedemptionCode(code, std::move(callback));
        });
      });
  commands.add<Claim>(
      "claim", "Make the order of a redemption code the customer's own",
      [](CLI::App& command, Claim& claim) {
        command.add_option("code", claim.code, "The redemption code")->required();
        addCustomerOptions(command, claim.customer);
        command.add_option("--pickup-type", claim.pickupType, "How the order is picked up");
        command.add_flag("--consent", claim.consents,
                         "Consent to terms and age; a customer is created where there is none");
      },
      claimOrder);
}

void addEventCommands(ClientCommands& commands) {
  commands.add<Event>(
      "event", "Report a state of the customer's journey or of the order",
      [](CLI::App& command, Event& event) {
        command.add_option("order", event.orderID, "The order's number")->required();
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
        command.add_option("order", rating.orderID, "The order's number")->required();
        command.add_option("rating", rating.rating, "The rating")->required();
        command.add_option("--comment", rating.comments, "What the customer says");
      },
      [](Client& client, const Rating& rating) {
        return performOrder(
            client,
            [&](OrderCallback callback) {
              Ovinta::orders().rateOrder(rating.orderID, rating.rating, rating.comments,
                                         std::move(callback));
            },
            kEventSilence);
      });
}

}  // namespace

void addOrderCommands(CLI::App& app, int& exitCode) {
  CLI::App* group = app.add_subcommand("orders", "The customer's orders");
  group->require_subcommand(1);
  ClientCommands commands(*group, exitCode);
  commands.add<NoInput>("fetch", "Get all orders and keep their summaries", noOptions, fetchOrders);
  addMakingCommands(commands);
  addEventCommands(commands);
}

}  // namespace ovinta::cli
