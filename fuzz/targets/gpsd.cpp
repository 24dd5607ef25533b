#include <cmath>

#include "fuzz/Target.h"
#include "platform/linux/location/PositionProvider.h"
#include "platform/linux/location/gpsd/GpsdReport.h"

namespace ovinta::fuzz {
namespace {

using namespace platform;

void run(std::string_view input) {
  while (!input.empty()) {
    const auto report = linuxos::readGpsdLine(takeLine(input));
    require(!report.version || !report.version->empty(), "a version that is told is one");
    if (!report.location) continue;
    const Location& fix = *report.location;
    require(std::abs(fix.coordinate.latitude) <= 90 && std::abs(fix.coordinate.longitude) <= 180,
            "a position is on Earth");
    require(std::isfinite(fix.horizontalAccuracy) &&
                fix.horizontalAccuracy >= linuxos::kBestAccuracyMetres,
            "an accuracy is finite and can be believed");
    require(std::isfinite(fix.speed), "a speed is finite");
  }
}

const Target kTarget("gpsd", run);

}  // namespace
}  // namespace ovinta::fuzz
