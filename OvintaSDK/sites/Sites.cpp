#include "OvintaSDK/sites/Sites.h"

#include <utility>

#include "OvintaSDK/api/GetSitesForRegionOperation.h"
#include "OvintaSDK/api/GetSitesOperation.h"
#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/core/WithoutNulls.h"

namespace ovinta {
namespace {

std::optional<SiteList> sitesOf(const std::optional<SitesPage>& answer) {
  return answer ? std::optional(answer->sites) : std::nullopt;
}

}  // namespace

void Sites::setAll(std::optional<SiteList> sites) { all_.set(withoutNulls(std::move(sites))); }

void Sites::fetch(const std::optional<std::string>& query, std::int64_t page,
                  SitesPageCallback callback) {
  const auto api = APIClient::of(context_);
  if (!api) {
    return tellError(callback, logRefusal(*context_, SitesManagerErrorType::loadingApiUrl));
  }
  api->send<GetSitesOperation>(
      query, page,
      [self = shared_from_this(), page, callback = std::move(callback)](
          const std::optional<SitesPage>& answer, const ErrorPtr& error) {
        self->adopt(answer, page);
        if (!callback) return;
        callback(sitesOf(answer), answer ? std::optional(answer->pagination) : std::nullopt, error);
      });
}

void Sites::fetchAll(const std::optional<std::string>& query, SitesCallback callback) {
  context_->log("Getting All Sites");
  fetchFrom(query, 1, std::move(callback));
}

void Sites::fetchFrom(const std::optional<std::string>& query, std::int64_t page,
                      SitesCallback callback) {
  fetch(query, page,
        [self = shared_from_this(), query, callback = std::move(callback)](
            const auto& /*sites*/, const auto& pagination, const ErrorPtr& error) {
          if (pagination && pagination->currentPage < pagination->totalPages) {
            self->fetchFrom(query, pagination->currentPage + 1, callback);
          } else if (callback) {
            callback(pagination ? self->all() : std::nullopt, error);
          }
        });
}

void Sites::fetch(const platform::CircularRegion& region, std::int64_t page,
                  std::optional<std::int64_t> per, SitesCallback callback) {
  const auto api = APIClient::of(context_);
  if (!api) {
    return tellError(callback, logRefusal(*context_, SitesManagerErrorType::loadingApiUrl));
  }
  api->send<GetSitesForRegionOperation>(
      region.center, region.radius, page, per,
      [self = shared_from_this(), page, callback = std::move(callback)](
          const std::optional<SitesPage>& answer, const ErrorPtr& error) {
        self->adopt(answer, page);
        if (callback) callback(sitesOf(answer), error);
      });
}

void Sites::adopt(const std::optional<SitesPage>& answer, std::int64_t page) {
  if (!answer) {
    context_->log("Got an error getting sites");
  } else if (page == 1) {
    setAll(answer->sites);
  } else {
    all_.change([&](std::optional<SiteList>& all) {
      if (all) all->insert(all->end(), answer->sites.begin(), answer->sites.end());
    });
  }
}

}  // namespace ovinta
