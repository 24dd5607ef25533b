#include "sandbox/ConsolePage.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace ovinta::sandbox {
namespace {

constexpr std::string_view kHead = R"(<!doctype html>
<html lang="en">
<meta charset="utf-8">
<title>Ovinta sandbox</title>
<style>
  body { font: 16px/1.5 system-ui, sans-serif; margin: 2rem; max-width: 70rem }
  table { border-collapse: collapse }
  th, td { border-bottom: 1px solid #ccc; padding: .3rem .8rem; text-align: left }
  form { display: inline }
</style>
<h1>Ovinta sandbox</h1>
<p>
  <a href="/sandbox/orders">Orders as JSON</a> ·
  <a href="/sandbox/requests">Requests received</a> ·
  Pushes: <code>GET /sandbox/pushes/&lt;push token&gt;</code> ·
  Oldest app served: <code>PUT /sandbox/minimum-app-version/&lt;version&gt;</code>,
  <code>DELETE /sandbox/minimum-app-version</code>
</p>
)";

constexpr std::array<std::string_view, 6> kOrderColumns = {
    "id", "redemption_code", "customer_name", "site_name", "state", "customer_state"};

constexpr std::array<std::string_view, 5> kSiteColumns = {"id", "name", "locality", "latitude",
                                                          "longitude"};

constexpr std::array<std::string_view, 4> kMoves = {"ready", "delayed", "cancelled", "gone"};

std::string escaped(std::string_view text) {
  std::string result;
  for (const char character : text) {
    switch (character) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '"':
        result += "&quot;";
        break;
      default:
        result += character;
    }
  }
  return result;
}

std::string cell(const platform::Dictionary& record, std::string_view key) {
  std::string text;
  if (const auto* word = platform::find<std::string>(record, key)) text = escaped(*word);
  if (const auto* number = platform::find<std::int64_t>(record, key)) {
    text = std::to_string(*number);
  }
  return "<td>" + text + "</td>";
}

std::string orderRow(const platform::Dictionary& order) {
  std::string row = "<tr>";
  for (const std::string_view column : kOrderColumns) row += cell(order, column);
  row += "<td>";
  const std::string id = std::to_string(*platform::find<std::int64_t>(order, "id"));
  for (const std::string_view move : kMoves) {
    const std::string word(move);
    row += "<form method=\"post\" action=\"/sandbox/orders/" + id + "/" + word + "\"><button>" +
           word + "</button></form> ";
  }
  return row + "</td></tr>\n";
}

std::string siteRow(const platform::Dictionary& site) {
  std::string row = "<tr>";
  for (const std::string_view column : kSiteColumns) row += cell(site, column);
  return row + "</tr>\n";
}

}  // namespace

std::string consolePage(const Sites& sites, const platform::List& orders) {
  std::string page(kHead);
  page +=
      "<h2>Orders</h2>\n<table><tr><th>Order<th>Code<th>Customer<th>Site<th>State"
      "<th>Customer state<th>Make it</tr>\n";
  for (const platform::Value& order : orders) page += orderRow(*order.as<platform::Dictionary>());
  page +=
      "</table>\n<h2>Sites</h2>\n<table><tr><th>Site<th>Name<th>City<th>Latitude"
      "<th>Longitude</tr>\n";
  for (const auto& [id, site] : sites) page += siteRow(site);
  return page + "</table>\n</html>\n";
}

}  // namespace ovinta::sandbox
