#include "OvintaSDK/sites/Sites.h"

#include <utility>

#include "OvintaSDK/api/GetSitesForRegionOperation.h"
#include "OvintaSDK/api/GetSitesOperation.h"
#include "OvintaSDK/api/Refusal.h"
#include "OvintaSDK/core/WithoutNulls.h"

namespace ovinta {

void Sites::setAll(std::optional<SiteList> sites) { all_.set(withoutNulls(std::move(sites))); }

template <class Operation, class... Inputs>
void Sites::fetchPage(std::int64_t page, SitesPageCallback callback, Inputs&&... inputs) {
  const auto api = APIClient::of(context_);
  if (!api) {
    return tellError(callback, logRefusal(*context_, SitesManagerErrorType::loadingApiUrl));
  }
  api->send<Operation>(std::forward<Inputs>(inputs)...,
                       [self = shared_from_this(), page, callback = std::move(callback)](
                           const std::optional<SitesPage>& answer, const ErrorPtr& error) {
                         self->adopt(answer, page);
                         if (!callback) return;
                         if (!answer) return callback(std::nullopt, std::nullopt, error);
                         callback(answer->sites, answer->pagination, error);
                       });
}

void Sites::fetch(const std::optional<std::string>& query, std::int64_t page,
                  SitesPageCallback callback) {
  fetchPage<GetSitesOperation>(page, std::move(callback), query, page);
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
  SitesPageCallback tellSites;
  if (callback) {
    tellSites = [callback = std::move(callback)](auto sites, const auto& /*pagination*/,
                                                 const ErrorPtr& error) {
      callback(std::move(sites), error);
    };
  }
  fetchPage<GetSitesForRegionOperation>(page, std::move(tellSites), region.center, region.radius,
                                        page, per);
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
