#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "cli/client/NumberOptions.h"
#include "cli/client/SandboxTools.h"
#include "cli/client/Table.h"
#include "cli/commands/Commands.h"
#include "sandbox/domain/Orders.h"

namespace ovinta::cli {
namespace {

using platform::Dictionary;

struct Move {
  std::string_view name;
  std::string_view state;
  std::string_view description;
};

/// What a merchant does with an order: the command, and the state that it leads to.
constexpr auto kMoves = std::to_array<Move>({
    {"ready", "ready", "Make an order ready"},
    {"delay", "delayed", "Tell that an order is delayed"},
    {"cancel", "cancelled", "Cancel an order"},
    {"gone", "gone", "Have an order be gone"},
});

static_assert(std::ranges::equal(kMoves, sandbox::kMerchantMoves, {}, &Move::state),
              "each of the merchant's moves has its command");

/// A week, beyond which the sandbox takes no estimate.
constexpr std::int64_t kMostMinutes = 7 * 24 * 60;

struct Estimate {
  std::int64_t orderID = 0;
  std::int64_t minutes = 0;
};

struct Offer {
  std::int64_t siteID = 0;
  std::string partnerIdentifier;
};

void addOrder(CLI::App& command, std::int64_t& orderID) {
  addNumber(command, "order", orderID, "The order's number")->required();
}

std::string place(std::int64_t orderID, std::string_view what) {
  return "orders/" + std::to_string(orderID) + "/" + std::string(what);
}

/// Prints the order that the sandbox has answered with: a sentence for people.
ExitCode printOrder(const SandboxTool& tool, platform::Value order, const std::string& sentence) {
  tool.output.print({std::move(order), sentence + "\n"});
  return ExitCode::success;
}

void addMove(CLI::App& group, int& exitCode, const Move& move) {
  addTool<std::int64_t>(group, exitCode, std::string(move.name),
                        std::string(move.description) + ", and push it", addOrder,
                        [&move](const SandboxTool& tool, std::int64_t orderID) {
                          return printOrder(tool, ask(tool, "POST", place(orderID, move.state)),
                                            "Order " + std::to_string(orderID) + " is " +
                                                std::string(move.state) + ".");
                        });
}

ExitCode estimate(const SandboxTool& tool, const Estimate& options) {
  const Dictionary record{{"eta_seconds", options.minutes * 60}};
  return printOrder(tool, ask(tool, "POST", place(options.orderID, "eta"), record),
                    "Order " + std::to_string(options.orderID) + ": the customer is expected in " +
                        std::to_string(options.minutes) + " min.");
}

ExitCode offer(const SandboxTool& tool, const Offer& options) {
  const Dictionary record{{"site_id", options.siteID},
                          {"partner_identifier", options.partnerIdentifier}};
  platform::Value order = ask(tool, "POST", "orders", record);
  const auto* fields = order.as<Dictionary>();
  const auto* code = fields ? platform::find<std::string>(*fields, "redemption_code") : nullptr;
  const std::string sentence = "An order waits to be claimed by the code " + (code ? *code : "?");
  return printOrder(tool, std::move(order), sentence + ".");
}

ExitCode listOrders(const SandboxTool& tool, const int& /*options*/) {
  platform::Value orders = ask(tool, "GET", "orders");
  const auto* rows = orders.as<platform::List>();
  std::string text = tableText({{"ID", "id"},
                                {"PARTNER ID", "partner_identifier"},
                                {"SITE", "site_id"},
                                {"STATE", "state"},
                                {"CUSTOMER", "customer_state"},
                                {"NAME", "customer_name"},
                                {"CODE", "redemption_code"},
                                {"ETA", "eta_at"}},
                               rows ? *rows : platform::List());
  tool.output.print({std::move(orders), std::move(text)});
  return ExitCode::success;
}

}  // namespace

void addMerchantCommands(CLI::App& app, int& exitCode) {
  CLI::App* group = app.add_subcommand("merchant", "The merchant's side of a sandbox");
  group->require_subcommand(1);
  addTool<int>(
      *group, exitCode, "orders", "Show all orders of the sandbox", [](CLI::App&, int&) {},
      listOrders);
  addTool<Offer>(
      *group, exitCode, "offer", "Make an order that a customer claims by its code",
      [](CLI::App& command, Offer& options) {
        addNumber(command, "--site", options.siteID, "The site's number")->required();
        command.add_option("--partner-id", options.partnerIdentifier, "Your name for the order")
            ->required();
      },
      offer);
  for (const Move& move : kMoves) addMove(*group, exitCode, move);
  addTool<Estimate>(
      *group, exitCode, "eta", "Set when the customer of an order is expected, and push it",
      [](CLI::App& command, Estimate& options) {
        addOrder(command, options.orderID);
        addNumber(command, "minutes", options.minutes, "Minutes from now")
            ->required()
            ->check(CLI::Range(std::int64_t{0}, kMostMinutes));
      },
      estimate);
}

}  // namespace ovinta::cli
