#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/client/ClientCommands.h"
#include "cli/client/Records.h"

namespace ovinta::cli {

/// Runs an operation that answers with an order, and prints the order.
inline ExitCode performOrder(Client& client, const std::function<void(OrderCallback)>& start) {
  return client.perform(
      [&](const Client::Report& report) {
        start([report](const OrderPtr& order, const ErrorPtr& error) {
          report(optionalResult(order), error);
        });
      },
      kNoData);
}

/// The wire strings of an enumeration's states.
template <class State>
std::vector<std::string> stateNames() {
  std::vector<std::string> names;
  names.reserve(StateTable<State>::kRows.size());
  for (const auto& row : StateTable<State>::kRows) names.emplace_back(row.wireString);
  return names;
}

}  // namespace ovinta::cli
