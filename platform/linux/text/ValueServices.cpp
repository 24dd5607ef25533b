#include <GeographicLib/Geodesic.hpp>

#include "platform/linux/Linux.h"
#include "platform/linux/text/BoostURLFormat.h"
#include "platform/linux/text/ICUDateFormatter.h"
#include "platform/linux/text/ICUText.h"

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

class ICUDateFormatterFactory : public DateFormatterFactory {
 public:
  std::unique_ptr<DateFormatter> makeDateFormatter(const DateFormat& format) override {
    return std::make_unique<ICUDateFormatter>(format);
  }
};

}  // namespace

Services makeValueServices() {
  Services services;
  services.text = std::make_shared<ICUText>();
  services.dateFormatters = std::make_shared<ICUDateFormatterFactory>();
  services.urls = std::make_shared<BoostURLFormat>();
  services.geodesy = std::make_shared<GeographicLibGeodesy>();
  return services;
}

}  // namespace ovinta::platform::linuxos
