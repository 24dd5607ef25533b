#pragma once

#include "OvintaSDK/api/SitesOperation.h"

namespace ovinta {

/// Gets a page of the sites that match a text.
class GetSitesOperation final : public SitesOperation {
 public:
  GetSitesOperation(APIClient api, std::optional<std::string> query,
                    std::optional<std::int64_t> page, Callback callback)
      : SitesOperation(std::move(api), std::move(callback)),
        query_(std::move(query)),
        page_(page) {}

  std::string_view errorContext() const override { return "getting Sites"; }

 private:
  Endpoint endpoint() const override {
    std::vector<platform::URLQueryItem> items;
    if (query_) items.push_back({"q", *query_});
    if (page_) items.push_back({"page", std::to_string(*page_)});
    return {.path = APIPath::sites(), .queryItems = std::move(items)};
  }

  std::optional<std::string> query_;
  std::optional<std::int64_t> page_;
};

}  // namespace ovinta
