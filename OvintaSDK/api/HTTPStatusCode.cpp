#include "OvintaSDK/api/HTTPStatusCode.h"

#include <algorithm>
#include <array>

namespace ovinta {
namespace {

struct Row {
  HTTPStatusCode status;
  std::string_view name;
  const char* defaultMessage = nullptr;
};

constexpr std::array kRows{
    Row{HTTPStatusCode::ok, "ok"},
    Row{HTTPStatusCode::accepted, "accepted"},
    Row{HTTPStatusCode::noContent, "no content"},
    Row{HTTPStatusCode::unauthorized, "unauthorized", "Not authorized"},
    Row{HTTPStatusCode::notFound, "not found", "Not found"},
    Row{HTTPStatusCode::gone, "gone"},
    Row{HTTPStatusCode::unprocessableEntity, "unprocessable entity", "Error processing input"},
    Row{HTTPStatusCode::appUpgradeRequired, "app upgrade required",
        "Please update to the latest version of the app"},
};

const Row* rowOf(HTTPStatusCode status) {
  const auto* const row = std::ranges::find(kRows, status, &Row::status);
  return row == kRows.end() ? nullptr : row;
}

}  // namespace

std::optional<HTTPStatusCode> httpStatusCode(int number) {
  const Row* const row = rowOf(static_cast<HTTPStatusCode>(number));
  return row ? std::optional(row->status) : std::nullopt;
}

std::optional<std::string> defaultMessage(HTTPStatusCode status) {
  const Row* const row = rowOf(status);
  if (!row || !row->defaultMessage) return std::nullopt;
  return row->defaultMessage;
}

std::string_view platform::EnumNames<HTTPStatusCode>::of(HTTPStatusCode status) {
  const auto* const row = rowOf(status);
  return row ? row->name : std::string_view();
}

}  // namespace ovinta
