// Sites and customers as the service sends them, and the keys that each record needs.
#include <gmock/gmock.h>

#include <tuple>

#include "OvintaSDK/model/wire/CustomerWire.h"
#include "OvintaSDK/model/wire/OrderWire.h"
#include "OvintaSDK/model/wire/SiteWire.h"
#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using platform::Dictionary;
using ::testing::ElementsAre;
using ::testing::StartsWith;

using RecordWireTest = SDKFixture;

constexpr const char* kFullSite =
    R"({"id":3,"partner_identifier":"P","name":"name","phone":"phone","street_address":"street",)"
    R"("full_address":"full","locality":"locality","region":"region","country":"country",)"
    R"("postal_code":"postal code","longitude":"1","latitude":"0","instructions":"instructions",)"
    R"("description":"description","cover_photo_url":"photo","project_accent_color":"accent",)"
    R"("project_accent_text_color":"accent text","project_logo_url":"logo",)"
    R"("geofence":{"latitude":"40.7","longitude":"-74.0","radius_meters":150.5}})";

TEST_F(RecordWireTest, EveryKeyOfASiteHasItsMember) {
  const Site site = decoded<Site>(kFullSite);
  EXPECT_EQ(site.id, 3);
  const auto texts =
      textsOf(site.partnerIdentifier, site.name, site.phone, site.streetAddress, site.fullAddress,
              site.locality, site.region, site.country, site.postalCode, site.longitude,
              site.latitude, site.instructions, site.descriptionText, site.coverPhotoURL,
              site.projectAccentColor, site.projectAccentTextColor, site.projectLogoURL);
  EXPECT_THAT(texts, ElementsAre("P", "name", "phone", "street", "full", "locality", "region",
                                 "country", "postal code", "1", "0", "instructions", "description",
                                 "photo", "accent", "accent text", "logo"));
  EXPECT_EQ(site.geofence,
            (Geofence{.latitude = "40.7", .longitude = "-74.0", .radiusMeters = 150.5}));
  EXPECT_EQ(encoded(site), kFullSite);
  EXPECT_EQ(encoded(decoded<Site>(R"({"id":3,"geofence":null})")), R"({"id":3})");
}

/// Checks what becomes of the record without each of its keys, and with a null or `wrong` in its
/// place.
template <class T>
void checkKeys(const Dictionary& record, const Dictionary& required, const platform::Value& wrong) {
  for (const auto& [key, value] : record) {
    SCOPED_TRACE(key);
    const bool isRequired = required.contains(key);
    const auto absent = platform::writeJSON(without(record, key));
    const auto null = platform::writeJSON(with(record, {{key, nullptr}}));
    EXPECT_EQ(decodingFailure<T>(absent),
              isRequired ? "key not found: No value associated with key \"" + key + "\"." : "none");
    EXPECT_THAT(decodingFailure<T>(null),
                StartsWith(isRequired ? "value not found at " + key + ": " : "none"));
    EXPECT_THAT(decodingFailure<T>(platform::writeJSON(with(record, {{key, wrong}}))),
                StartsWith("type mismatch at " + key + ": "));
    if (isRequired) continue;
    EXPECT_EQ(encoded(decoded<T>(null)), encoded(decoded<T>(absent)));
    EXPECT_NE(encoded(decoded<T>(null)), encoded(decoded<T>(platform::writeJSON(record))));
  }
}

TEST_F(RecordWireTest, OnlyTheRequiredKeysMustBeThere) {
  checkKeys<Site>(*platform::parseJSON(kFullSite)->as<Dictionary>(), {{"id", 3}}, true);
  const Dictionary geofence{{"latitude", "0"}, {"longitude", "1"}, {"radius_meters", 5}};
  checkKeys<Geofence>(geofence, geofence, true);
  EXPECT_THAT(decodingFailure<Geofence>(platform::writeJSON(with(geofence, {{"latitude", 0}}))),
              StartsWith("type mismatch at latitude"));
  checkKeys<Customer>(customerRecord(), {{"name", ""}, {"api_token", ""}}, 5);
  checkKeys<OrderPtr>(fullOrder(), requiredOrder(), Dictionary{});
}

TEST_F(RecordWireTest, PagesComeWithEachList) {
  const auto page = decoded<SitesResponse>(
      R"({"data":[],"pages":{"next":"n","previous":"p","current":2,"count":3,"per":25}})");
  EXPECT_TRUE(page.data.empty());
  const auto& [next, previous, current, count, per] = page.pages;
  EXPECT_EQ(std::tuple(next, previous, current, count, per), std::tuple("n", "p", 2, 3, 25));

  const std::string list = R"({"data":[{"id":1}])";
  const std::pair<const char*, const char*> cases[] = {
      {R"(,"pages":{"next":null,"current":2,"count":3,"per":25}})", "none"},
      {R"(,"pages":{"next":3,"current":2,"count":3,"per":25}})", "type mismatch at pages.next"},
      {R"(,"pages":{"current":"2","count":3,"per":25}})", "type mismatch at pages.current"},
      {R"(,"pages":{"current":2,"per":25}})", "key not found at pages"},
      {R"(,"pages":null})", "value not found at pages"},
  };
  for (const auto& [rest, failure] : cases) {
    EXPECT_THAT(decodingFailure<SitesResponse>(list + rest), StartsWith(failure)) << rest;
  }
  EXPECT_THAT(decodingFailure<SitesResponse>(R"({"pages":{"current":1,"count":1,"per":1}})"),
              StartsWith("key not found"));
}

TEST_F(RecordWireTest, ASiteHasALocationWhenBothTextsAreDecimal) {
  const Site site = decoded<Site>(kFullSite);
  EXPECT_EQ(site.location().value().coordinate,
            (platform::Coordinate{.latitude = 0, .longitude = 1}));
  EXPECT_NEAR(site.distance({}).value(), 111'319.491, 0.001);
  // The range is not checked.
  EXPECT_TRUE((Site{.longitude = "0", .latitude = "400"}).location());
  for (const Site& lost : {Site{.latitude = "1"}, Site{.longitude = "1", .latitude = ""},
                           Site{.longitude = "1 ", .latitude = "1"}}) {
    EXPECT_FALSE(lost.location() || lost.distance({}));
  }
}

TEST_F(RecordWireTest, CustomersHoldTheirDetailsInTheSameObject) {
  EXPECT_EQ(decoded<Customer>(platform::writeJSON(customerRecord())), customer());
  EXPECT_EQ(encoded(customer().info), R"({"name":"Ann","car_type":"Van","car_color":"Red",)"
                                      R"("license_plate":"ABC 123","phone":"555"})");
  const std::pair<platform::Value, bool> cases[] = {
      {nullptr, false}, {"", false}, {" ", true}, {"ann@example.org", true}};
  for (const auto& [email, registered] : cases) {
    const auto text = platform::writeJSON(with(customerRecord(), {{"email", email}}));
    EXPECT_EQ(decoded<Customer>(text).registered(), registered) << text;
  }
}

}  // namespace
}  // namespace ovinta::test
