#include "bench/SampleOrders.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <random>
#include <string_view>
#include <utility>

#include "platform/JSON.h"

namespace ovinta::bench {

namespace {

/// The members of an order. In the texts "#" stands for the order's number in seven digits, "@" for
/// two digits below 60 and "~" for a hexadecimal digit; both differ from place to place.
constexpr std::array<std::pair<std::string_view, std::string_view>, 46> kMembers{{
    {"id", "#"},
    {"site_id", "4@"},
    {"state", ""},
    {"customer_state", ""},
    {"partner_identifier", R"("P-2021-#")"},
    {"redemption_code", R"("~~~~~~")"},
    {"redeemed_at", R"("2021-03-04T15:@:@.3@Z")"},
    {"display_name", R"("Order #")"},
    {"pickup_window", R"("2021-03-04T15:@:@.000-0500/2021-03-04T16:@:@.000-0500")"},
    {"pickup_type", R"("curbside")"},
    {"eta_at", R"("2021-03-04T15:@:@.0@Z")"},
    {"completed_at", R"("2021-03-04T16:@:@.1@Z")"},
    {"created_at", R"("2021-03-04T14:@:@.2@Z")"},
    {"updated_at", R"("2021-03-04T15:@:@.9@Z")"},
    {"customer_rating_value_string", R"("5")"},
    {"customer_rating_comments", R"("Was there in @ minutes, thank you.")"},
    {"site_name", R"("Harbour Street Market @")"},
    {"site_phone", R"("+1 555 010 @@")"},
    {"site_street_address", R"("@ Harbour Street")"},
    {"site_full_address", R"("@ Harbour Street, Springfield, NY 100@")"},
    {"site_locality", R"("Springfield")"},
    {"site_region", R"("NY")"},
    {"site_country", R"("US")"},
    {"site_postal_code", R"("100@")"},
    {"site_longitude", R"("-73.@@@")"},
    {"site_latitude", R"("40.@@@")"},
    {"site_instructions",
     R"("Turn left behind the gate.\nPark on space @, switch the engine off and tell us when you are here; we bring it.")"},
    {"site_description", R"("Caf\u00e9 and market hall")"},
    {"site_cover_photo_url", R"("https://example.com/photos/#.jpg")"},
    {"site_beacon_regions",
     R"([{"uuid":"~~~~~~~~-C36C-495A-93FC-0C247A3E~~~~","major":1,"minor":1@},)"
     R"({"major":1,"uuid":"~~~~~~~~-C36C-495A-93FC-0C247A3E~~~~"}])"},
    {"site_partner_identifier", R"("S-4@")"},
    {"project_accent_color", R"("#0a84ff")"},
    {"project_accent_text_color", R"("#ffffff")"},
    {"project_logo_url", R"("https://example.com/logos/@.png")"},
    {"project_mobile_flow_always_show_vehicle_info_fields", "true"},
    {"project_mobile_flow_customer_name_editing_enabled", "false"},
    {"project_mobile_flow_pickup_type_selection_enabled", "true"},
    {"project_mobile_flow_require_vehicle_info_if_visible", "false"},
    {"curbside_localized_string", R"("Curbside")"},
    {"pickup_localized_string", R"("In store")"},
    {"customer_name", R"("Alex Example")"},
    {"customer_car_type", R"("Estate")"},
    {"customer_car_color", R"("Blue")"},
    {"customer_license_plate", R"("ABC 1@@")"},
    {"push_token", R"("dev:~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~~")"},
    {"a_key_that_nobody_knows", "null"},
}};

constexpr std::array<std::string_view, 5> kStates{R"("created")", R"("ready")", R"("delayed")",
                                                  R"("cancelled")", R"("completed")"};
constexpr std::array<std::string_view, 5> kCustomerStates{
    R"("created")", R"("en_route")", R"("waiting")", R"("arrived")", R"("completed")"};

/// Writes orders. Two of the same count write the same.
class Author {
 public:
  std::string text(std::size_t count) {
    std::string text = R"({"data":[)";
    for (std::size_t i = 0; i < count; ++i) {
      if (i > 0) text += ',';
      appendOrder(text, i);
    }
    return text + "]}";
  }

 private:
  // The standard library's shuffle and distributions differ from one to the other.
  std::size_t below(std::size_t limit) { return random_() % limit; }

  void appendOrder(std::string& text, std::size_t number) {
    for (std::size_t i = order_.size(); i > 1; --i) std::swap(order_[i - 1], order_[below(i)]);
    char separator = '{';
    for (const auto& [key, form] : order_) {
      text += separator;
      text += '"';
      text += key;
      text += R"(":)";
      if (key == "state") {
        text += kStates[below(kStates.size())];
      } else if (key == "customer_state") {
        text += kCustomerStates[below(kCustomerStates.size())];
      } else {
        appendFilled(text, form, number);
      }
      separator = ',';
    }
    text += '}';
  }

  void appendFilled(std::string& text, std::string_view form, std::size_t number) {
    const bool isColour = form.starts_with("\"#0") || form.starts_with("\"#f");
    for (const char c : form) {
      char digits[16];
      if (c == '#' && !isColour) {
        std::snprintf(digits, sizeof digits, "%07zu", 1'000'000 + number);
      } else if (c == '@') {
        std::snprintf(digits, sizeof digits, "%02zu", below(60));
      } else if (c == '~') {
        std::snprintf(digits, sizeof digits, "%zX", below(16));
      } else {
        text += c;
        continue;
      }
      text += digits;
    }
  }

  std::mt19937 random_{7};
  std::array<std::pair<std::string_view, std::string_view>, 46> order_ = kMembers;
};

}  // namespace

std::string sampleOrders(std::size_t count) { return Author().text(count); }

std::string arrived(const std::string& answer) {
  std::string body;
  body.reserve(answer.size() + platform::JSONDocument::kRoom);
  return std::move(body.append(answer));
}

}  // namespace ovinta::bench
