#include "OvintaSDK/sites/SitesManager.h"

#include <utility>

#include "OvintaSDK/sites/Sites.h"

namespace ovinta {

template class ManagerError<SitesManagerErrorType>;

SitesManager::~SitesManager() = default;

std::optional<SiteList> SitesManager::all() const { return sites_->all(); }

void SitesManager::setAll(std::optional<SiteList> sites) { sites_->setAll(std::move(sites)); }

void SitesManager::fetch(const std::optional<std::string>& query, std::int64_t page,
                         SitesPageCallback callback) {
  sites_->fetch(query, page, std::move(callback));
}

void SitesManager::fetchAll(const std::optional<std::string>& query, SitesCallback callback) {
  sites_->fetchAll(query, std::move(callback));
}

void SitesManager::fetch(const platform::CircularRegion& region, std::int64_t page,
                         SitesCallback callback) {
  sites_->fetch(region, page, std::nullopt, std::move(callback));
}

void SitesManager::fetch(const platform::CircularRegion& region, std::int64_t page,
                         std::int64_t per, SitesCallback callback) {
  sites_->fetch(region, page, per, std::move(callback));
}

}  // namespace ovinta
