#pragma once

#include <CLI/CLI.hpp>

#include "OvintaSDK/model/CustomerInfo.h"
#include "cli/client/ClientOptions.h"

namespace ovinta::cli {

/// Adds the options that make up a customer's details; answers the one of the name.
inline CLI::Option* addCustomerOptions(CLI::App& command, CustomerInfo& info) {
  CLI::Option* name =
      command.add_option("--name", info.name, "The customer's name")->check(isNotEmpty);
  command.add_option("--car-type", info.carType, "The vehicle's type");
  command.add_option("--car-color", info.carColor, "The vehicle's colour");
  command.add_option("--license-plate", info.licensePlate, "The licence plate");
  command.add_option("--phone", info.phone, "The phone number");
  return name;
}

}  // namespace ovinta::cli
