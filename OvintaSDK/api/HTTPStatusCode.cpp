#include "OvintaSDK/api/HTTPStatusCode.h"

#include <algorithm>
#include <array>

namespace ovinta {
namespace {

struct Row {
  HTTPStatusCode status;
  const char* defaultMessage = nullptr;
};

constexpr std::array kRows{
    Row{HTTPStatusCode::ok},
    Row{HTTPStatusCode::accepted},
    Row{HTTPStatusCode::noContent},
    Row{HTTPStatusCode::unauthorized, "Not authorized"},
    Row{HTTPStatusCode::notFound, "Not found"},
    Row{HTTPStatusCode::gone},
    Row{HTTPStatusCode::unprocessableEntity, "Error processing input"},
    Row{HTTPStatusCode::appUpgradeRequired, "Please update to the latest version of the app"},
};

}  // namespace

std::optional<HTTPStatusCode> httpStatusCode(int number) {
  const auto status = static_cast<HTTPStatusCode>(number);
  const bool isKnown = std::ranges::find(kRows, status, &Row::status) != kRows.end();
  return isKnown ? std::optional(status) : std::nullopt;
}

std::optional<std::string> defaultMessage(HTTPStatusCode status) {
  const auto row = std::ranges::find(kRows, status, &Row::status);
  if (row == kRows.end() || !row->defaultMessage) return std::nullopt;
  return row->defaultMessage;
}

}  // namespace ovinta
