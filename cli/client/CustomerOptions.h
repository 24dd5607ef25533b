#pragma once

#include <CLI/CLI.hpp>

#include "OvintaSDK/model/CustomerInfo.h"

namespace ovinta::cli {

/// The options that make up a customer's details.
inline void addCustomerOptions(CLI::App& command, CustomerInfo& info) {
  command.add_option("--name", info.name, "The customer's name")->required();
  command.add_option("--car-type", info.carType, "The vehicle's type");
  command.add_option("--car-color", info.carColor, "The vehicle's colour");
  command.add_option("--license-plate", info.licensePlate, "The licence plate");
  command.add_option("--phone", info.phone, "The phone number");
}

}  // namespace ovinta::cli
