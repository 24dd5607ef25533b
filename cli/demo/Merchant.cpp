#include "cli/demo/Merchant.h"

#include <stdexcept>

namespace ovinta::cli {

std::optional<std::string> Merchant::moveOrder(std::int64_t orderID, const std::string& state) {
  try {
    client_.ask("POST", "orders/" + std::to_string(orderID) + "/" + state);
    return std::nullopt;
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

}  // namespace ovinta::cli
