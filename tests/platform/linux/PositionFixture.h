#pragma once

#include <optional>
#include <vector>

#include "platform/linux/position/PositionProviders.h"
#include "tests/platform/simulation/Sphere.h"
#include "tests/support/BusFixture.h"

namespace ovinta::platform::linux {

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

  std::vector<Location> locations_;
  std::optional<PositionAccess> access_;
};

}  // namespace ovinta::platform::linux
