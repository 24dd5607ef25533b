#pragma once

#include <optional>
#include <vector>

#include "platform/linux/location/PositionProviders.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/BusFixture.h"

namespace ovinta::platform::linuxos {

/// Opens streams of a provider and notes what they tell.
class PositionTest : public test::BusTest {
 protected:
  std::unique_ptr<PositionStream> open(PositionProvider& provider, double distanceFilter) {
    return provider.open(
        distanceFilter,
        {.onLocation = [this](const Location& location) { locations_.push_back(location); },
         .onAccess = [this](PositionAccess access) { access_ = access; }});
  }

  void waitForAccess(PositionAccess access) {
    waitUntil([&] { return access_ == access; });
    access_.reset();
  }

  /// Has `send` tell a place, again and again, until the stream has told of it.
  void sendUntilTold(double metresNorth, const std::function<void(Coordinate)>& send) {
    const Coordinate place = simulation::northOfSite(metresNorth);
    const auto isTold = [&] {
      return !locations_.empty() &&
             simulation::Sphere().distance(locations_.back().coordinate, place) < 1;
    };
    for (int attempt = 0; attempt < 20 && !isTold(); ++attempt) {
      send(place);
      time_.waitUntil(isTold, std::chrono::seconds(1));
    }
    EXPECT_TRUE(isTold()) << metresNorth;
  }
  /// The last of the positions, sent with a speed of 10.
  void expectOfNow() {
    EXPECT_GE(locations_.back().horizontalAccuracy, kBestAccuracyMetres);
    EXPECT_NEAR(locations_.back().speed, 10, 0.1);
    EXPECT_LT(std::chrono::abs(locations_.back().timestamp - std::chrono::system_clock::now()),
              std::chrono::minutes(1));
  }

  std::vector<Location> locations_;
  std::optional<PositionAccess> access_;
};

}  // namespace ovinta::platform::linuxos
