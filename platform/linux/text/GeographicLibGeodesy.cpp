#include <GeographicLib/Geodesic.hpp>

#include "platform/linux/text/TextServices.h"

namespace ovinta::platform::linuxos {

namespace {

class GeographicLibGeodesy : public Geodesy {
 public:
  double distance(Coordinate from, Coordinate to) const override {
    double metres = 0;
    GeographicLib::Geodesic::WGS84().Inverse(from.latitude, from.longitude, to.latitude,
                                             to.longitude, metres);
    return metres;
  }
};

}  // namespace

std::shared_ptr<Geodesy> makeGeodesy() { return std::make_shared<GeographicLibGeodesy>(); }

}  // namespace ovinta::platform::linuxos
