#include "sandbox/console/ConsolePage.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string_view>

#include "sandbox/domain/Orders.h"

namespace ovinta::sandbox {
namespace {

// Forms are sent as JSON; an answer that is an error is shown, all others renew the page.
constexpr std::string_view kHead = R"(<!doctype html>
<html lang="en">
<meta charset="utf-8">
<title>Ovinta sandbox</title>
<style>
  body { font: 16px/1.5 system-ui, sans-serif; margin: 2rem; max-width: 80rem }
  table { border-collapse: collapse }
  th, td { border-bottom: 1px solid #ccc; padding: .3rem .8rem; text-align: left }
  td form { display: inline }
</style>
<script>
  addEventListener('submit', async event => {
    event.preventDefault();
    const fields = [...new FormData(event.target)].filter(([, value]) => value);
    const data = Object.fromEntries(fields.map(
        ([key, value]) => [key, key === 'site_id' ? Number(value) : value]));
    const answer = await fetch(event.target.action,
                               {method: 'POST', body: JSON.stringify({data})});
    if (answer.ok) location.reload(); else alert(await answer.text());
  });
</script>
<h1>Ovinta sandbox</h1>
<p>
  <a href="/sandbox/orders">Orders</a> ·
  <a href="/sandbox/customers">customers</a> ·
  <a href="/sandbox/requests">requests</a> and a
  <a href="/sandbox/snapshot">snapshot</a> of everything as JSON
</p>
<form action="/sandbox/reset"><button>Reset everything</button></form>
)";

constexpr std::string_view kOfferForm = R"(<form action="/sandbox/orders">
  Site <input name="site_id" type="number" value="42" required>
  Partner's number <input name="partner_identifier" required>
  Customer's name <input name="customer_name">
  <button>Create an order to claim</button>
</form>
)";

constexpr std::size_t kRequestsShown = 20;

struct Column {
  std::string_view heading;
  std::string_view key;
};

constexpr auto kOrderColumns = std::to_array<Column>({{"Order", "id"},
                                                      {"Code", "redemption_code"},
                                                      {"Customer", "customer_name"},
                                                      {"Site", "site_name"},
                                                      {"State", "state"},
                                                      {"Customer state", "customer_state"},
                                                      {"Rating", "customer_rating_value_string"}});

constexpr auto kCustomerColumns = std::to_array<Column>({{"Name", "name"},
                                                         {"E-mail", "email"},
                                                         {"Token", "api_token"},
                                                         {"Reset token", "reset_password_token"}});

constexpr auto kRequestColumns = std::to_array<Column>(
    {{"Method", "method"}, {"Path", "path"}, {"Body", "body"}, {"Status", "status"}});

constexpr auto kSiteColumns = std::to_array<Column>({{"Site", "id"},
                                                     {"Name", "name"},
                                                     {"City", "locality"},
                                                     {"Latitude", "latitude"},
                                                     {"Longitude", "longitude"}});

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

std::string moveButtons(const platform::Dictionary& order) {
  std::string buttons;
  const std::string id = std::to_string(*platform::find<std::int64_t>(order, "id"));
  for (const std::string_view move : kMerchantMoves) {
    const std::string word(move);
    buttons += "<form action=\"/sandbox/orders/" + id + "/" + word + "\"><button>" + word +
               "</button></form> ";
  }
  return "<td>" + buttons + "</td>";
}

std::string noMore(const platform::Dictionary&) { return {}; }

std::string table(std::string_view title, std::span<const Column> columns,
                  const platform::List& records,
                  std::string (*lastCell)(const platform::Dictionary&) = noMore) {
  std::string text("<h2>");
  text.append(title).append("</h2>\n<table><tr>");
  for (const Column& column : columns) text.append("<th>").append(column.heading);
  text += "</tr>\n";
  for (const platform::Value& value : records) {
    const auto& record = *value.as<platform::Dictionary>();
    text += "<tr>";
    for (const Column& column : columns) text += cell(record, column.key);
    text += lastCell(record) + "</tr>\n";
  }
  return text + "</table>\n";
}

/// The last ones, newest first.
platform::List latest(const platform::List& requests) {
  const std::size_t count = std::min(requests.size(), kRequestsShown);
  return {requests.rbegin(), requests.rbegin() + static_cast<std::ptrdiff_t>(count)};
}

}  // namespace

std::string consolePage(const ConsoleView& view) {
  std::string page(kHead);
  page += table("Orders", kOrderColumns, view.orders, moveButtons);
  page += kOfferForm;
  page += table("Customers", kCustomerColumns, view.customers);
  page += table("Last requests", kRequestColumns, latest(view.requests));
  page += table("Sites", kSiteColumns, view.sites);
  return page + "</html>\n";
}

}  // namespace ovinta::sandbox
