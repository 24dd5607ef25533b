#include "OvintaSDK/sites/SitesManager.h"

#include "OvintaSDK/api/GetSitesForRegionOperation.h"
#include "OvintaSDK/api/GetSitesOperation.h"
#include "OvintaSDK/core/LogLine.h"
#include "OvintaSDK/core/OvintaState.h"
#include "OvintaSDK/core/UserDefaultsKey.h"
#include "OvintaSDK/core/WithoutNulls.h"

namespace ovinta {
namespace {

ErrorPtr refusal() {
  auto error = std::make_shared<const SitesManagerError>(SitesManagerErrorType::loadingApiUrl);
  logLine(error->localizedDescription());
  return error;
}

}  // namespace

void SitesManager::setAll(std::optional<SiteList> sites) {
  all_.set(withoutNulls(std::move(sites)));
}

void SitesManager::fetch(const std::optional<std::string>& query, std::int64_t page,
                         SitesPageCallback callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) {
    const ErrorPtr error = refusal();
    if (callback) callback(std::nullopt, std::nullopt, error);
    return;
  }
  OvintaState::current().apiQueue().addOperation(std::make_shared<GetSitesOperation>(
      *apiURL, query, page,
      [this, page, callback = std::move(callback)](const auto& result, const ErrorPtr& error) {
        const auto sites = result ? std::optional(result->sites) : std::nullopt;
        adopt(sites, page);
        if (callback) {
          callback(sites, result ? std::optional(result->pagination) : std::nullopt, error);
        }
      }));
}

void SitesManager::fetchAll(const std::optional<std::string>& query, SitesCallback callback) {
  logLine("Getting All Sites");
  fetchFrom(query, 1, std::move(callback));
}

void SitesManager::fetchFrom(const std::optional<std::string>& query, std::int64_t page,
                             SitesCallback callback) {
  fetch(query, page,
        [this, query, callback = std::move(callback)](const auto& /*sites*/, const auto& pagination,
                                                      const ErrorPtr& error) {
          if (pagination && pagination->currentPage < pagination->totalPages) {
            fetchFrom(query, pagination->currentPage + 1, callback);
          } else if (callback) {
            callback(pagination ? all() : std::nullopt, error);
          }
        });
}

void SitesManager::fetch(const platform::CircularRegion& region, std::int64_t page,
                         SitesCallback callback) {
  fetchRegion(region, page, std::nullopt, std::move(callback));
}

void SitesManager::fetch(const platform::CircularRegion& region, std::int64_t page,
                         std::int64_t per, SitesCallback callback) {
  fetchRegion(region, page, per, std::move(callback));
}

void SitesManager::fetchRegion(const platform::CircularRegion& region, std::int64_t page,
                               std::optional<std::int64_t> per, SitesCallback callback) {
  const auto apiURL = UserDefaultsKey::apiBase.stringValue();
  if (!apiURL) {
    const ErrorPtr error = refusal();
    if (callback) callback(std::nullopt, error);
    return;
  }
  OvintaState::current().apiQueue().addOperation(std::make_shared<GetSitesForRegionOperation>(
      *apiURL, region.center, region.radius, page, per,
      [this, page, callback = std::move(callback)](const auto& result, const ErrorPtr& error) {
        const auto sites = result ? std::optional(result->sites) : std::nullopt;
        adopt(sites, page);
        if (callback) callback(sites, error);
      }));
}

void SitesManager::adopt(const std::optional<SiteList>& sites, std::int64_t page) {
  if (!sites) {
    logLine("Got an error getting sites");
  } else if (page == 1) {
    setAll(sites);
  } else if (auto gathered = all()) {
    gathered->insert(gathered->end(), sites->begin(), sites->end());
    setAll(std::move(gathered));
  }
}

}  // namespace ovinta
