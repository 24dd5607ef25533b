#include <chrono>

#include "cli/client/CustomerOptions.h"
#include "cli/client/NumberOptions.h"
#include "cli/client/OrderReports.h"
#include "cli/client/Secret.h"
#include "cli/commands/Commands.h"

namespace ovinta::cli {
namespace {

/// The bounds of a pickup window in minutes: a year at most.
constexpr std::int64_t kShortestPickup = 1;
constexpr std::int64_t kLongestPickup = std::int64_t{365} * 24 * 60;

struct Creation {
  std::int64_t siteID = 0;
  std::string partnerIdentifier;
  CustomerInfo customer;
  std::string state;
  std::optional<std::int64_t> minutesToPickup;
  std::int64_t minutesOfPickup = 30;
  std::optional<std::string> pushToken;
};

struct Claim {
  std::string code;
  CustomerInfo customer;
  std::optional<std::string> pickupType;
  bool consents = false;
  CustomerConsent consent{.termsOfService = true, .ageVerification = true};
  bool createsNoCustomer = false;
  std::optional<std::string> pushToken;
};

void addPushTokenOption(CLI::App& command, std::optional<std::string>& token) {
  addSecretOption(command, "--push-token", token, "The device's push token");
}

std::optional<std::string> presentName(const CustomerInfo& customer) {
  return customer.name.empty() ? std::nullopt : std::optional(customer.name);
}

std::optional<PickupWindow> pickupWindow(const Creation& creation) {
  if (!creation.minutesToPickup) return std::nullopt;
  const platform::Date start =
      platform::services().clock->now() + std::chrono::minutes(*creation.minutesToPickup);
  return PickupWindow(start, start + std::chrono::minutes(creation.minutesOfPickup));
}

ExitCode createOrder(Client& client, const Creation& creation) {
  auto info = CreateOrderInfo::withCustomerInfo(
      creation.siteID, creation.partnerIdentifier, creation.customer, creation.pushToken,
      stateFromWireString<OrderState>(creation.state), pickupWindow(creation));
  info.customerName = presentName(creation.customer);
  return performOrder(
      client, [&](OrderCallback callback) { Ovinta::orders().create(info, std::move(callback)); });
}

/// Absent as in the claims that the library makes itself, which no text stands for.
RequiredText pushTokenOf(const Claim& claim) {
  return claim.pushToken ? *claim.pushToken : readRecord<ClaimOrderInfo>("{}")->pushToken;
}

ExitCode claimOrder(Client& client, const Claim& claim) {
  if (claim.pushToken) Ovinta::updatePushToken(*claim.pushToken);
  return performOrder(client, [&](const OrderCallback& callback) {
    if (claim.createsNoCustomer) {
      return Ovinta::orders().claimWithRedemptionCode(claim.code, claim.customer, claim.pickupType,
                                                      callback);
    }
    auto info =
        ClaimOrderInfo::withCustomerInfo(claim.customer, pushTokenOf(claim), claim.pickupType);
    info.customerName = presentName(claim.customer);
    Ovinta::orders().claimWithRedemptionCode(
        claim.code, info, claim.consents ? std::optional(claim.consent) : std::nullopt, callback);
  });
}

void addCreationOptions(CLI::App& command, Creation& creation) {
  addNumber(command, "--site", creation.siteID, "The site's number")->required();
  command.add_option("--partner-id", creation.partnerIdentifier, "Your name for the order")
      ->required();
  addCustomerOptions(command, creation.customer);
  command.add_option("--state", creation.state, "The order's first state; the service's choice")
      ->check(CLI::IsMember(stateNames<OrderState>()));
  auto* pickup = addNumber(command, "--pickup-in", creation.minutesToPickup,
                           "Minutes from now to the pickup window")
                     ->check(CLI::Range(-kLongestPickup, kLongestPickup));
  addNumber(command, "--pickup-for", creation.minutesOfPickup, "Minutes that the window lasts")
      ->check(CLI::Range(kShortestPickup, kLongestPickup))
      ->capture_default_str()
      ->needs(pickup);
  addPushTokenOption(command, creation.pushToken);
}

void addClaimOptions(CLI::App& command, Claim& claim) {
  command.add_option("code", claim.code, "The redemption code")->required();
  CLI::Option* name = addCustomerOptions(command, claim.customer);
  command.add_option("--pickup-type", claim.pickupType, "How the order is picked up");
  auto* consent = command.add_flag(
      "--consent", claim.consents,
      "Consent to terms and age, so that a customer can be created where there is none");
  command.add_flag("!--no-terms", claim.consent.termsOfService, "But not to the terms of service")
      ->needs(consent);
  command.add_flag("!--no-age", claim.consent.ageVerification, "But not to the age verification")
      ->needs(consent);
  command
      .add_flag("--as-current", claim.createsNoCustomer,
                "For the current customer only: create none")
      ->needs(name)
      ->excludes(consent);
  addPushTokenOption(command, claim.pushToken);
}

}  // namespace

void addOrderMakingCommands(CLI::App& group, int& exitCode) {
  ClientCommands commands(group, exitCode);
  commands.add<Creation>("create", "Create an order; with no customer yet, the customer too",
                         addCreationOptions, createOrder);
  commands.add<Claim>("claim", "Make the order of a redemption code the customer's own",
                      addClaimOptions, claimOrder);
}

}  // namespace ovinta::cli
