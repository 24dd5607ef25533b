#pragma once

#include "OvintaSDK/api/NumberText.h"
#include "OvintaSDK/api/SitesOperation.h"
#include "platform/Location.h"

namespace ovinta {

/// Gets a page of the sites inside a circle.
class GetSitesForRegionOperation final : public SitesOperation {
 public:
  /// `radius` in metres; `per` is the page size.
  GetSitesForRegionOperation(APIClient api, platform::Coordinate center, double radius,
                             std::optional<std::int64_t> page, std::optional<std::int64_t> per,
                             Callback callback)
      : SitesOperation(std::move(api), std::move(callback)),
        center_(center),
        radius_(radius),
        page_(page),
        per_(per) {}

  std::string_view errorContext() const override { return "getting Sites for a region"; }

 private:
  Endpoint endpoint() const override {
    std::vector<platform::URLQueryItem> items{{"latitude", numberText(center_.latitude)},
                                              {"longitude", numberText(center_.longitude)},
                                              {"radius", numberText(radius_)}};
    if (page_) items.push_back({"page", std::to_string(*page_)});
    if (per_) items.push_back({"per", std::to_string(*per_)});
    return {.path = APIPath::sites(), .queryItems = std::move(items)};
  }

  platform::Coordinate center_;
  double radius_;
  std::optional<std::int64_t> page_;
  std::optional<std::int64_t> per_;
};

}  // namespace ovinta
