#include "OvintaSDK/model/Site.h"

#include <gmock/gmock.h>

#include <tuple>

#include "OvintaSDK/model/wire/SiteWire.h"
#include "tests/support/SDKFixture.h"
#include "tests/support/WireText.h"

namespace ovinta::test {
namespace {

using platform::Dictionary;
using platform::Value;
using ::testing::ElementsAre;
using ::testing::StartsWith;

using SiteTest = SDKFixture;

constexpr const char* kFullSite =
    R"({"id":3,"partner_identifier":"P","name":"name","phone":"phone","street_address":"street",)"
    R"("full_address":"full","locality":"locality","region":"region","country":"country",)"
    R"("postal_code":"postal code","longitude":"1","latitude":"0","instructions":"instructions",)"
    R"("description":"description","cover_photo_url":"photo","project_accent_color":"accent",)"
    R"("project_accent_text_color":"accent text","project_logo_url":"logo",)"
    R"("geofence":{"latitude":"40.7","longitude":"-74.0","radius_meters":150.5}})";

Dictionary fullSite() { return *platform::parseJSON(kFullSite)->as<Dictionary>(); }

TEST_F(SiteTest, EveryKeyHasItsMember) {
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

TEST_F(SiteTest, RefusesMalformedRecords) {
  for (const auto& [key, value] : fullSite()) {
    const auto wrong = platform::writeJSON(with(fullSite(), {{key, true}}));
    EXPECT_THAT(decodingFailure<Site>(wrong), StartsWith("type mismatch at " + key));
    const auto absent = platform::writeJSON(without(fullSite(), key));
    EXPECT_THAT(decodingFailure<Site>(absent), StartsWith(key == "id" ? "key not found" : "none"));
  }
  const Dictionary geofence{{"latitude", "0"}, {"longitude", "1"}, {"radius_meters", 5}};
  EXPECT_EQ(decoded<Geofence>(platform::writeJSON(geofence)).radiusMeters, 5);
  for (const auto& [key, value] : geofence) {
    EXPECT_THAT(decodingFailure<Geofence>(platform::writeJSON(without(geofence, key))),
                StartsWith("key not found"))
        << key;
    // Numbers where texts are expected, and the other way round.
    const Value wrong = value.as<std::string>() ? Value(1) : Value("1");
    EXPECT_THAT(decodingFailure<Geofence>(platform::writeJSON(with(geofence, {{key, wrong}}))),
                StartsWith("type mismatch at " + key));
  }
}

TEST_F(SiteTest, PagesComeWithEachList) {
  const auto page = decoded<SitesResponse>(
      R"({"data":[],"pages":{"next":"n","previous":"p","current":2,"count":3,"per":25}})");
  EXPECT_TRUE(page.data.empty());
  const auto& [next, previous, current, count, per] = page.pages;
  EXPECT_EQ(std::tuple(next, previous, current, count, per), std::tuple("n", "p", 2, 3, 25));

  const std::string list = R"({"data":[{"id":1}])";
  const std::pair<const char*, const char*> cases[] = {
      {R"(,"pages":{"current":2,"count":3,"per":25}})", "none"},
      {R"(,"pages":{"next":null,"current":2,"count":3,"per":25}})", "none"},
      {R"(,"pages":{"next":3,"current":2,"count":3,"per":25}})", "type mismatch at pages.next"},
      {R"(,"pages":{"current":"2","count":3,"per":25}})", "type mismatch at pages.current"},
      {R"(,"pages":{"current":2,"per":25}})", "key not found at pages"},
      {R"(,"pages":null})", "value not found at pages"},
      {"}", "key not found"},
  };
  for (const auto& [rest, failure] : cases) {
    EXPECT_THAT(decodingFailure<SitesResponse>(list + rest), StartsWith(failure)) << rest;
  }
  EXPECT_THAT(decodingFailure<SitesResponse>(R"({"pages":{"current":1,"count":1,"per":1}})"),
              StartsWith("key not found"));
}

TEST_F(SiteTest, HasALocationWhenBothTextsAreDecimal) {
  const Site site = decoded<Site>(kFullSite);
  ASSERT_TRUE(site.location());
  EXPECT_EQ(site.location()->coordinate, (platform::Coordinate{.latitude = 0, .longitude = 1}));
  EXPECT_NEAR(site.distance({}).value(), 111'319.491, 0.001);
  for (const Site& lost : {Site{.latitude = "1"}, Site{.longitude = "1", .latitude = ""},
                           Site{.longitude = "1 ", .latitude = "1"}}) {
    EXPECT_FALSE(lost.location());
    EXPECT_FALSE(lost.distance({}));
  }
}

}  // namespace
}  // namespace ovinta::test
